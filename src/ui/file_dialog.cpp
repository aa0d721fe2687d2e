#include "ui/file_dialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QEvent>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace orvanta {

void FileDialog::showEvent(QShowEvent* event) {
  QFileDialog::showEvent(event);
  const auto* buttons = findChild<QDialogButtonBox*>();
  if (m_field != nullptr || buttons == nullptr) return;
  m_field = findChild<QLineEdit*>(u"fileNameEdit"_s);
  m_accept = buttons->button(acceptMode() == AcceptSave ? QDialogButtonBox::Save : QDialogButtonBox::Open);
  connect(m_field, &QLineEdit::textChanged, this, &FileDialog::keepEnabled);
  m_accept->installEventFilter(this);
  keepEnabled();
}

bool FileDialog::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_accept && event->type() == QEvent::EnabledChange) keepEnabled();
  return QFileDialog::eventFilter(watched, event);
}

/// The toolkit disables the button for what it cannot read as a list of names.
void FileDialog::keepEnabled() {
  if (!typed().isEmpty()) m_accept->setEnabled(true);
}

/// The path in the field, if the toolkit would split it.
QString FileDialog::typed() const {
  if (m_field == nullptr || !m_field->text().contains(u'"')) return {};
  return QDir::cleanPath(directory().absoluteFilePath(m_field->text()));
}

void FileDialog::accept() {
  const QString path = typed();
  if (path.isEmpty()) {
    QFileDialog::accept();
  } else if (fileMode() == AnyFile && QFileInfo(path).isDir()) {
    // Like the toolkit with the name of a folder: open it.
    setDirectory(path);
    m_field->clear();
  } else {
    m_typed = path;
    QDialog::accept();
  }
}

QString FileDialog::chosen() const {
  if (result() != Accepted) return {};
  if (!m_typed.isEmpty()) return QDir::toNativeSeparators(m_typed);
  return QDir::toNativeSeparators(selectedFiles().value(0));
}

}  // namespace orvanta
