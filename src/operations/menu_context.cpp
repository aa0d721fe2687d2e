#include "operations/menu_context.h"

#include <QUrl>

#include "adb/device_names.h"
#include "adb/replies.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QCoro::Task<> MenuContext::execute(QString line) {
  const QString reply = co_await m_window.objDOS->ExecuteCommand(line);
  LastReply = withoutServerNotes(reply);
}

QCoro::Task<QString> MenuContext::ask(QString line) {
  if (line.isEmpty()) co_return QString();
  const QString reply = co_await m_window.objDOS->ExecuteCommand(line);
  co_return withoutServerNotes(reply);
}

QCoro::Task<bool> MenuContext::isUsable(QString package) {
  if (!package.isEmpty() && isFitPackageName(package)) {
    const bool goesOn = co_await isHeadsetOfList(m_window.answering());
    co_return goesOn;
  }
  co_await showError(inFace(u"包名不可用，什么都没有做"_s, u"No usable package name: nothing was done"_s) +
                     u": "_s + package);
  co_return false;
}

QCoro::Task<bool> MenuContext::isHeadsetOfList(HeadsetIdentity answering) {
  m_window.noteAnswering(answering);
  if (!m_window.isOfAnotherHeadset()) co_return true;
  MessageBox box;
  box.text =
      inFace(
          u"这个列表来自另一台头显\r\n\r\n列表：%1\r\n现在：%2\r\n\r\n对现在的头显继续吗？"_s,
          u"The list is of another headset\r\n\r\nList: %1\r\nNow: %2\r\n\r\nGo on with the one that answers now?"_s,
          u"这个列表来自另一台头显 (The list is of another headset)\r\n\r\n列表 (list): %1\r\n现在 (now): %2\r\n\r\n对现在的头显继续吗？ (Go on with the one that answers now?)"_s)
          .arg(m_window.headset().name(), answering.name());
  box.icon = BoxIcon::Warning;
  box.buttons = BoxButtons::YesNo;
  box.preselected = BoxAnswer::No;
  const BoxAnswer answer = co_await showBox(box);
  co_return answer == BoxAnswer::Yes;
}

QString MenuContext::told() const {
  const bool silent = LastReply.trimmed().isEmpty();
  if (m_bench.turn.stopped()) {
    const QString stopped = inFace(u"已停止"_s, u"Stopped"_s);
    return silent ? stopped : stopped + u"\r\n"_s + LastReply;
  }
  return silent ? inFace(u"设备没有回答"_s, u"The headset gave no answer"_s) : LastReply;
}

QCoro::Task<BoxAnswer> MenuContext::showBox(MessageBox box) {
  m_bench.turn.noteQuestion();
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

QCoro::Task<bool> MenuContext::mayCopyTo(QString place, CopyKind kind) {
  const CopyKind there = copyKindAt(place);
  if (there == CopyKind::Nothing || there == kind) co_return true;
  QString what;
  if (there == CopyKind::File)
    what = inFace(u"这里有一个同名的文件"_s, u"There is a file of this name here"_s);
  if (there == CopyKind::ExpansionFiles)
    what = inFace(u"这里似乎已有这个应用的 OBB 备份"_s,
                  u"There seems to be a backup of this app's OBB files here"_s);
  if (there == CopyKind::Data)
    what =
        inFace(u"这里似乎已有这个应用的数据备份"_s, u"There seems to be a backup of this app's data here"_s);
  co_await showError(
      what + u"\r\n"_s + place + u"\r\n\r\n"_s +
      inFace(u"两者同名，请换一个文件夹"_s, u"Both bear the same name: please take another folder"_s));
  co_return false;
}

void MenuContext::presentFolder(const QString& folder) {
  desktop().Beep();
  desktop().open(QUrl::fromLocalFile(folder));
}

}  // namespace orvanta
