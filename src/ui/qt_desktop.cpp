#include "ui/qt_desktop.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPointer>

#include "ui/awaited.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

QMessageBox::Icon iconOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::None:
      return QMessageBox::NoIcon;
    case BoxIcon::Information:
      return QMessageBox::Information;
    case BoxIcon::Question:
      return QMessageBox::Question;
    case BoxIcon::Warning:
      return QMessageBox::Warning;
    case BoxIcon::Critical:
      return QMessageBox::Critical;
  }
  return QMessageBox::NoIcon;
}

/// The window that a box belongs above: without one it could open behind it.
QWidget* topWindow() {
  QWidget* modal = QApplication::activeModalWidget();
  if (modal != nullptr) return modal;
  if (QApplication::activeWindow() != nullptr) return QApplication::activeWindow();
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible()) return window;
  }
  return nullptr;
}

/// A dialog that belongs to the window above which it stands, and is gone when its question is answered. The
/// window may go first, at the end of the process.
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

/// `text` with each line end of either kind as the one that a box shows as such.
QString lineBreaks(QString text) {
  // A box of more than this would not fit on any screen.
  text.truncate(4000);
  return text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
}

/// Where a dialog opens; a suggestion without a folder leaves that to the dialog.
QString suggestedFolder(const QString& path) {
  const QFileInfo info(path);
  return info.fileName() == path ? QString() : info.path();
}

/// The first selected path of a file dialog, or nothing.
QCoro::Task<QString> answered(QFileDialog* dialog) {
  dialog->setWindowModality(Qt::ApplicationModal);
  dialog->open();
  co_await Emitted(dialog, &QDialog::finished);
  if (dialog->result() != QDialog::Accepted || dialog->selectedFiles().isEmpty()) co_return QString();
  co_return QDir::toNativeSeparators(dialog->selectedFiles().constFirst());
}

}  // namespace

QCoro::Task<BoxAnswer> QtDesktop::showBox(MessageBox box) {
  const Held dialog(new QMessageBox(topWindow()));
  dialog->setWindowTitle(box.title);
  dialog->setTextFormat(Qt::PlainText);
  dialog->setText(lineBreaks(box.text));
  dialog->setIcon(iconOf(box.icon));
  const bool yesNo = box.buttons == BoxButtons::YesNo;
  dialog->setStandardButtons(yesNo ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok);
  if (yesNo) dialog->setEscapeButton(QMessageBox::No);
  dialog->setWindowModality(Qt::ApplicationModal);
  dialog->open();
  co_await Emitted(static_cast<QDialog*>(dialog.get()), &QDialog::finished);
  if (!yesNo) co_return BoxAnswer::Ok;
  co_return dialog->result() == QMessageBox::Yes ? BoxAnswer::Yes : BoxAnswer::No;
}

QCoro::Task<QString> QtDesktop::askSaveFile(SaveFileQuestion question) {
  const Held dialog(new QFileDialog(topWindow(), question.title, suggestedFolder(question.suggestedPath)));
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setFileMode(QFileDialog::AnyFile);
  dialog->setOption(QFileDialog::DontConfirmOverwrite);
  dialog->setNameFilters(question.filters);
  dialog->selectFile(QFileInfo(question.suggestedPath).fileName());
  const QString path = co_await answered(dialog.get());
  co_return path;
}

QCoro::Task<QString> QtDesktop::askFolder(QString title) {
  const Held dialog(new QFileDialog(topWindow(), title));
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setOption(QFileDialog::ShowDirsOnly);
  const QString path = co_await answered(dialog.get());
  co_return path;
}

void QtDesktop::Beep() {
  QApplication::beep();
}

void QtDesktop::open(const QUrl& address) {
  QDesktopServices::openUrl(address);
}

}  // namespace orvanta
