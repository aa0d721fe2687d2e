#pragma once

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

namespace orvanta {

/// An `adb` beside the test program that notes its words, one call a line, and answers from files: the reply
/// to a call stands under the call's words. For what a window does with an answer; how the real tool answers
/// is for the end-to-end tests.
class ScriptedAdb {
 public:
  explicit ScriptedAdb(const QString& folder) : m_folder(folder) {
    const QString script = QStringLiteral(
                               "#!/bin/sh\nprintf '%s\\n' \"$*\" >>'%1/calls'\n"
                               "name=$(printf '%s' \"$*\" | tr '/ ' '__')\n"
                               "if [ -f '%1'/\"$name\" ]; then cat '%1'/\"$name\"; fi\n")
                               .arg(folder);
    QFile tool(path());
    QFile::remove(path());
    if (tool.open(QIODevice::WriteOnly)) tool.write(script.toUtf8());
    tool.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }
  ~ScriptedAdb() { QFile::remove(path()); }
  ScriptedAdb(const ScriptedAdb&) = delete;
  ScriptedAdb& operator=(const ScriptedAdb&) = delete;

  /// From now on `call` is answered with `reply`.
  void answer(QString call, const QString& reply) {
    QFile file(m_folder + u'/' + call.replace(u'/', u'_').replace(u' ', u'_'));
    if (file.open(QIODevice::WriteOnly)) file.write(reply.toUtf8());
  }
  /// The calls so far, which are then forgotten.
  QStringList takeCalls() {
    QFile file(m_folder + QStringLiteral("/calls"));
    if (!file.open(QIODevice::ReadOnly)) return {};
    const QString text = QString::fromUtf8(file.readAll());
    file.remove();
    return text.split(u'\n', Qt::SkipEmptyParts);
  }

 private:
  static QString path() { return QCoreApplication::applicationDirPath() + QStringLiteral("/adb"); }
  QString m_folder;
};

}  // namespace orvanta
