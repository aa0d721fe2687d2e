#include "desktop/desktop_entry.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

/// `text` as a value of an entry: with the escapes that a path can need.
QString escapedValue(const QString& text) {
  QString value;
  for (const QChar c : text) {
    switch (c.unicode()) {
      case u'\\':
        value += u"\\\\"_s;
        break;
      case u'\n':
        value += u"\\n"_s;
        break;
      case u'\r':
        value += u"\\r"_s;
        break;
      case u'\t':
        value += u"\\t"_s;
        break;
      default:
        value += c;
    }
  }
  return value;
}

}  // namespace

QString execValue(const QString& program) {
  QString quoted;
  for (const QChar c : program) {
    if (u"\"`$\\"_s.contains(c)) quoted += u'\\';
    if (c == u'%') quoted += u'%';
    quoted += c;
  }
  // Some desktops look for the program before they undo the doubling, and would not find it. They find `env`,
  // which in turn takes a word with an equals sign for a variable.
  const bool throughEnv = program.contains(u'%') && !program.contains(u'=');
  return (throughEnv ? u"env "_s : QString()) + escapedValue(u'"' + quoted + u"\" %F"_s);
}

QString desktopEntry(const QString& program) {
  // TryExec hides the entry once its program is gone.
  return u"[Desktop Entry]\n"
         "Type=Application\n"
         "Version=1.0\n"
         "Name=Orvanta\n"
         "Name[zh_CN]=Orvanta 头显助手\n"
         "GenericName=Headset Companion\n"
         "GenericName[zh_CN]=头显助手\n"
         "Comment=Put Android packages on a Quest headset and manage what is there\n"
         "Comment[zh_CN]=将安卓应用安装到 Quest 头显并管理其中的内容\n"
         "Exec="_s +
         execValue(program) + u"\nTryExec="_s + escapedValue(program) + u"\nIcon="_s + desktopId +
         u"\nMimeType=application/vnd.android.package-archive;\n"
         "Categories=Utility;\n"
         "Keywords=apk;obb;adb;headset;sideload;\n"
         "Keywords[zh_CN]=apk;obb;adb;头显;安装;备份;\n"
         "Terminal=false\n"
         "StartupNotify=true\n"
         "StartupWMClass=Orvanta\n"_s;
}

}  // namespace orvanta
