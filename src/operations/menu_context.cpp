#include "operations/menu_context.h"

#include <QUrl>

#include "core/tools.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QCoro::Task<> MenuContext::execute(QString line) {
  const QString reply = co_await m_window.objDOS->ExecuteCommand(line);
  LastReply = reply;
}

QCoro::Task<QString> MenuContext::ask(QString line) {
  if (line.isEmpty()) co_return QString();
  const QString reply = co_await m_window.objDOS->ExecuteCommand(line);
  co_return reply;
}

QCoro::Task<bool> MenuContext::isUsable(QString package) {
  if (!package.isEmpty() && isFitPackageName(package)) co_return true;
  co_await showError(u"包名不可用，什么都没有做 (No usable package name: nothing was done): "_s + package);
  co_return false;
}

QString MenuContext::told() const {
  const bool silent = LastReply.trimmed().isEmpty();
  if (m_form.turn().stopped()) {
    const QString stopped = u"已停止 (Stopped)"_s;
    return silent ? stopped : stopped + u"\r\n"_s + LastReply;
  }
  return silent ? u"设备没有回答 (The headset gave no answer)"_s : LastReply;
}

QCoro::Task<BoxAnswer> MenuContext::showBox(MessageBox box) {
  // While the user reads, nothing runs that could be stopped.
  for (const QPointer<BusyStrip>& strip : strips()) {
    if (strip != nullptr) strip->end();
  }
  const BoxAnswer answer = co_await desktop().showBox(box);
  co_return answer;
}

QCoro::Task<> MenuContext::showInformation(QString text, QString title) {
  MessageBox box;
  box.text = text;
  box.icon = BoxIcon::Information;
  box.title = title;
  co_await showBox(box);
}

QCoro::Task<> MenuContext::showError(QString text, QString title) {
  MessageBox box;
  box.text = text;
  box.icon = BoxIcon::Critical;
  box.title = title;
  co_await showBox(box);
}

void MenuContext::presentFolder(const QString& folder) {
  desktop().Beep();
  desktop().open(QUrl::fromLocalFile(folder));
}

}  // namespace orvanta
