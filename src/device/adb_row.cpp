#include "device/adb_row.h"

#include <QKeyEvent>
#include <QRegularExpression>

#include "adb/lines.h"
#include "core/main_window.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr qint64 longestStored = 1024 * 1024;  // bytes

/// `text` on one line: each run of line ends becomes one blank.
QString oneLine(QString text) {
  static const QRegularExpression around(u"^\\s*[\\r\\n]\\s*|\\s*[\\r\\n]\\s*$"_s);
  static const QRegularExpression between(u"\\s*[\\r\\n]\\s*"_s);
  return text.remove(around).replace(between, u" "_s);
}

}  // namespace

AdbRow::AdbRow(Workbench& bench, apkinfo& form) : m_bench(bench), m_form(form) {
  connect(form.Command6, &QPushButton::clicked, this, &AdbRow::Command6_Click);
  connect(form.Command7, &QPushButton::clicked, this, &AdbRow::Command7_Click);
  connect(form.Text1, &QLineEdit::textChanged, this, &AdbRow::keepOneLine);
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

void AdbRow::keepOneLine(const QString& text) {
  const QString line = oneLine(text);
  if (line == text) return;
  const auto caret = oneLine(text.left(m_form.Text1->cursorPosition())).size();
  m_form.Text1->setText(line);
  m_form.Text1->setCursorPosition(static_cast<int>(caret));
}

QCoro::Task<> AdbRow::Command7_Click() {
  const auto turn = m_bench.turn.begin();
  if (!turn) co_return;
  m_bench.desktop.Beep();
  const QString line = freeLine(Host::current(), m_form.Text1->text());
  // Only the user reads the reply, in the console.
  m_bench.objDOS.setBound({longestStored});
  co_await m_bench.objDOS.ExecuteCommand(line);
  m_bench.objDOS.setBound({});
}

void AdbRow::Text1_KeyDown(int KeyCode, Qt::KeyboardModifiers) {
  if (KeyCode == Qt::Key_Return || KeyCode == Qt::Key_Enter) Command7_Click();
}

}  // namespace orvanta
