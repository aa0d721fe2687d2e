#include "device/adb_row.h"

#include <QKeyEvent>

#include "core/main_window.h"
#include "device/presses.h"

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
  m_form.setHeight(open ? openHeight : closedHeight);
  if (open) m_form.Text1->setFocus();
}

QCoro::Task<> AdbRow::Command7_Click() {
  const auto turn = m_form.turn().begin();
  if (!turn) co_return;
  m_form.desktop().Beep();
  const QString line = freeLine(Host::current(), m_form.Text1->text());
  co_await m_form.objDOS->ExecuteCommand(line);
}

void AdbRow::Text1_KeyDown(int KeyCode, Qt::KeyboardModifiers) {
  if (KeyCode == Qt::Key_Return || KeyCode == Qt::Key_Enter) Command7_Click();
}

}  // namespace orvanta
