#include "ui/qt_desktop.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QStyle>

#include "platform/awaited.h"
#include "platform/file_moves.h"
#include "platform/notification.h"
#include "text/bilingual.h"
#include "ui/file_dialog.h"
#include "ui/long_message.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

/// The toolkit's names for an icon.
struct Sign {
  QMessageBox::Icon icon;
  QStyle::StandardPixmap picture;
};

Sign signOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::None:
      break;
    case BoxIcon::Information:
      return {QMessageBox::Information, QStyle::SP_MessageBoxInformation};
    case BoxIcon::Question:
      return {QMessageBox::Question, QStyle::SP_MessageBoxQuestion};
    case BoxIcon::Warning:
      return {QMessageBox::Warning, QStyle::SP_MessageBoxWarning};
    case BoxIcon::Critical:
      return {QMessageBox::Critical, QStyle::SP_MessageBoxCritical};
  }
  return {QMessageBox::NoIcon, QStyle::SP_CustomBase};
}

/// The window that a box belongs to: without one the box could open behind it.
QWidget* topWindow() {
  // A dialog that was just closed can still count as the active window; a box that belonged to it would close
  // with it.
  for (QWidget* window : {QApplication::activeModalWidget(), QApplication::activeWindow()}) {
    while (window != nullptr && !window->isVisible()) window = window->parentWidget();
    if (window != nullptr) return window->window();
  }
  for (QWidget* window : QApplication::topLevelWidgets()) {
    const bool lasts = window->windowType() == Qt::Window || window->windowType() == Qt::Dialog;
    if (lasts && window->isVisible()) return window;
  }
  return nullptr;
}

/// A dialog that belongs to a window and closes when its question is answered. If the window is destroyed
/// first, the dialog goes with it, unanswered.
template <class Dialog>
class Held {
 public:
  explicit Held(Dialog* dialog) : m_dialog(dialog) {}
  ~Held() {
    if (m_dialog) m_dialog->deleteLater();
  }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  Dialog* operator->() const { return m_dialog; }
  Dialog* get() const { return m_dialog; }

 private:
  QPointer<Dialog> m_dialog;
};

/// `text` with line ends of either kind as those that a box shows.
QString lineBreaks(QString text) {
  // A tool can print anything; laying out more than this would freeze the window.
  constexpr qsizetype most = 1 << 20;
  if (const qsizetype more = text.size() - most; more > 0) {
    text.truncate(most);
    text += (u"\n… "_s + inFace(u"还有 %1 个字符"_s, u"and %1 characters more"_s)).arg(more);
  }
  return text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
}

QDialog* boxFor(const MessageBox& box) {
  const QString text = lineBreaks(box.text);
  const Sign sign = signOf(box.icon);
  if (LongMessage::isNeededFor(text, QApplication::font())) {
    const bool plain = sign.icon == QMessageBox::NoIcon;
    const QIcon icon = plain ? QIcon() : QApplication::style()->standardIcon(sign.picture);
    return new LongMessage(box, text, icon, topWindow());
  }
  auto* dialog = new QMessageBox(topWindow());
  dialog->setWindowTitle(box.title);
  dialog->setTextFormat(Qt::PlainText);
  dialog->setTextInteractionFlags(Qt::TextSelectableByMouse);
  dialog->setText(text);
  dialog->setIcon(sign.icon);
  const bool yesNo = box.buttons == BoxButtons::YesNo;
  dialog->setStandardButtons(yesNo ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok);
  if (yesNo) {
    const bool yesFirst = box.preselected == BoxAnswer::Yes;
    dialog->setDefaultButton(yesFirst ? QMessageBox::Yes : QMessageBox::No);
    dialog->setEscapeButton(QMessageBox::No);
  }
  return dialog;
}

/// Where a dialog opens; a suggestion without a folder leaves that to the dialog.
QString suggestedFolder(const QString& path) {
  const QFileInfo info(path);
  return info.fileName() == path ? QString() : info.path();
}

/// What was chosen in the dialog, or nothing.
QCoro::Task<QString> answered(FileDialog* dialog) {
  dialog->setWindowModality(Qt::ApplicationModal);
  dialog->open();
  const bool closed = co_await Emitted(static_cast<QDialog*>(dialog), &QDialog::finished);
  if (!closed) co_return QString();
  const QString path = dialog->chosen();
  co_return path;
}

}  // namespace

QCoro::Task<BoxAnswer> QtDesktop::showBox(MessageBox box) {
  const bool yesNo = box.buttons == BoxButtons::YesNo;
  if (!m_asks) co_return yesNo ? BoxAnswer::No : BoxAnswer::Ok;
  const Held dialog(boxFor(box));
  dialog->setWindowModality(Qt::ApplicationModal);
  dialog->open();
  const bool closed = co_await Emitted(dialog.get(), &QDialog::finished);
  if (!yesNo) co_return BoxAnswer::Ok;
  co_return closed && dialog->result() == QMessageBox::Yes ? BoxAnswer::Yes : BoxAnswer::No;
}

QCoro::Task<QString> QtDesktop::askSaveFile(SaveFileQuestion question) {
  if (!m_asks) co_return QString();
  const Held dialog(new FileDialog(topWindow(), question.title, suggestedFolder(question.suggestedPath)));
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setFileMode(QFileDialog::AnyFile);
  dialog->setOption(QFileDialog::DontConfirmOverwrite);
  dialog->setNameFilters(question.filters);
  dialog->selectFile(QFileInfo(question.suggestedPath).fileName());
  const QString path = co_await answered(dialog.get());
  co_return path;
}

QCoro::Task<QString> QtDesktop::askFolder(QString title) {
  if (!m_asks) co_return QString();
  const Held dialog(new FileDialog(topWindow(), title, m_lastFolder));
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setOption(QFileDialog::ShowDirsOnly);
  const QString path = co_await answered(dialog.get());
  if (!path.isEmpty()) m_lastFolder = QFileInfo(path).path();
  co_return path;
}

QCoro::Task<int> QtDesktop::askChoice(ChoiceQuestion question) {
  if (!m_asks) co_return -1;
  const Held dialog(new QInputDialog(topWindow()));
  dialog->setWindowTitle(question.title);
  dialog->setLabelText(question.text);
  dialog->setComboBoxItems(question.choices);
  dialog->setOption(QInputDialog::UseListViewForComboBoxItems);
  dialog->setWindowModality(Qt::ApplicationModal);
  dialog->open();
  const bool closed = co_await Emitted(static_cast<QDialog*>(dialog.get()), &QDialog::finished);
  if (!closed || dialog->result() != QDialog::Accepted) co_return -1;
  co_return static_cast<int>(question.choices.indexOf(dialog->textValue()));
}

void QtDesktop::notify(const QString& title, const QString& text) {
  notifyUser(title, text);
}

void QtDesktop::Beep() {
  if (m_asks) QApplication::beep();
}

bool QtDesktop::moveToWasteBin(const QString& path) {
  return orvanta::moveToWasteBin(path);
}

void QtDesktop::open(const QUrl& address) {
  if (m_asks) QDesktopServices::openUrl(address);
}

void QtDesktop::stopAsking() {
  m_asks = false;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (!window->isVisible() || !window->isModal()) continue;
    auto* dialog = qobject_cast<QDialog*>(window);
    if (dialog != nullptr) {
      dialog->reject();
    } else {
      window->close();
    }
  }
}

}  // namespace orvanta
