#include "desktop/first_run.h"

#include "core/main_window.h"
#include "desktop/file_manager_entry.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

QCoro::Task<> inform(apkinfo& form, QString text, BoxIcon icon) {
  MessageBox box;
  box.text = text;
  box.icon = icon;
  co_await form.desktop().showBox(box);
}

QCoro::Task<> endInFailure(apkinfo& form) {
  form.settings().write(u"Explentry"_s, u"off"_s);
  co_await inform(form, u"错误：也许没有管理员权限！"_s, BoxIcon::None);
  form.QuitProgram();
}

/// Whether the store has taken it; without it the dialog would come again for ever.
bool keepSuccess(apkinfo& form) {
  return form.settings().write(u"Explentry"_s, u"on"_s) && form.settings().write(u"Grant"_s, u"off"_s);
}

}  // namespace

QCoro::Task<> FirstRun(apkinfo& form, FileManagerEntry& entry) {
  co_await inform(form,
                  u"Orvanta将自身集成到资源管理器中， 通过右键单击APK文件，可以使用Orvanta来安装该文件。\r\r"
                  "在确认资源管理器集成之前，请将Orvanta的目录复制到一个永久磁盘位置"_s,
                  BoxIcon::Information);
  MessageBox question;
  question.text = u"是否在鼠标右键菜单中集成Orvanta？"_s;
  question.title = u"资源管理器集成"_s;
  question.buttons = BoxButtons::YesNo;
  const BoxAnswer answer = co_await form.desktop().showBox(question);
  if (answer != BoxAnswer::Yes) {
    form.QuitProgram();
    co_return;
  }
  if (!entry.writeCommand() || !keepSuccess(form)) {
    co_await endInFailure(form);
    co_return;
  }
  co_await entry.writeAppliesTo();
  if (!entry.writeIcon() || !keepSuccess(form)) {
    co_await endInFailure(form);
    co_return;
  }
  // Whoever starts the program directly after this sees once what such a start is for.
  form.settings().write(u"tooltip"_s, u"on"_s);
  form.desktop().Beep();
  co_await inform(form, u"右键单击APK文件，然后选择“install”"_s, BoxIcon::Information);
  form.QuitProgram();
}

}  // namespace orvanta
