#include "device/adb_row.h"

#include <QKeyEvent>
#include <QRegularExpression>

#include "core/main_window.h"
#include "device/presses.h"

using namespace Qt::StringLiterals;

namespace orvanta {

AdbRow::AdbRow(apkinfo& form) : m_form(form) {
  connect(form.Command6, &QPushButton::clicked, this, &AdbRow::Command6_Click);
  connect(form.Command7, &QPushButton::clicked, this, &AdbRow::Command7_Click);
  form.Text1->installEventFilter(this);
}

bool AdbRow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    Text1_KeyDown(key->key(), key->modifiers());
  }
  return QObject::eventFilter(watched, event);
}

void AdbRow::Command6_Click() {
  const bool open = m_form.Height() != openHeight;
  if (!open) m_form.keepFocusOutOf({m_form.Text1, m_form.Command7}, m_form.Command6);
  m_form.setHeight(open ? openHeight : closedHeight);
  if (open) m_form.Text1->setFocus();
}

QCoro::Task<> AdbRow::Command7_Click() {
  const auto turn = m_form.turn().begin();
  if (!turn) co_return;
  m_form.desktop().Beep();
  // A line pasted with its end is still one line.
  static const QRegularExpression lineEnd(u"[\\r\\n]"_s);
  const QString words = m_form.Text1->text().section(lineEnd, 0, 0);
  const QString line = freeLine(Host::current(), words);
  co_await m_form.objDOS->ExecuteCommand(line);
}

void AdbRow::Text1_KeyDown(int KeyCode, Qt::KeyboardModifiers) {
  if (KeyCode == Qt::Key_Return || KeyCode == Qt::Key_Enter) Command7_Click();
}

}  // namespace orvanta
