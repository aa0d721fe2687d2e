#include "desktop/first_run.h"

#include "desktop/file_manager_entry.h"
#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

QCoro::Task<> inform(FirstRunNeeds needs, QString text, BoxIcon icon) {
  MessageBox box;
  box.text = text;
  box.icon = icon;
  co_await needs.desktop.showBox(box);
}

QCoro::Task<> endInFailure(FirstRunNeeds needs) {
  needs.settings.write(u"Explentry"_s, u"off"_s);
  co_await inform(needs, designed(u"错误：也许没有管理员权限！"), BoxIcon::None);
  needs.QuitProgram();
}

/// Returns whether the setting was stored; without it the dialog would come back at every start.
bool keepSuccess(FirstRunNeeds needs) {
  return needs.settings.write(u"Explentry"_s, u"on"_s) && needs.settings.write(u"Grant"_s, u"off"_s);
}

}  // namespace

QCoro::Task<> FirstRun(FirstRunNeeds needs, FileManagerEntry& entry) {
  co_await inform(
      needs,
      designed(u"Orvanta将自身集成到资源管理器中， 通过右键单击APK文件，可以使用Orvanta来安装该文件。\r\r"
               "在确认资源管理器集成之前，请将Orvanta的目录复制到一个永久磁盘位置"),
      BoxIcon::Information);
  MessageBox question;
  question.text = designed(u"是否在鼠标右键菜单中集成Orvanta？");
  question.title = designed(u"资源管理器集成");
  question.buttons = BoxButtons::YesNo;
  const BoxAnswer answer = co_await needs.desktop.showBox(question);
  if (answer != BoxAnswer::Yes) {
    needs.QuitProgram();
    co_return;
  }
  if (!entry.writeCommand() || !keepSuccess(needs)) {
    co_await endInFailure(needs);
    co_return;
  }
  co_await entry.writeAppliesTo();
  if (!entry.writeIcon() || !keepSuccess(needs)) {
    co_await endInFailure(needs);
    co_return;
  }
  // From now on a start without a package shows the tip, until the user turns it off.
  needs.settings.write(u"tooltip"_s, u"on"_s);
  needs.desktop.Beep();
  co_await inform(needs, designed(u"右键单击APK文件，然后选择“install”"), BoxIcon::Information);
  needs.QuitProgram();
}

}  // namespace orvanta
