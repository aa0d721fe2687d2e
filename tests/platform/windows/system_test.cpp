#include <windows.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <array>

#include "platform/run.h"
#include "platform/script_place.h"
#include "platform/shell_verb.h"
#include "platform/windows/program_name.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

/// What only Windows has: the raw command line, handles, batch files, the registry.
class SystemTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void textBehindTheProgram() {
    const QString program = u"C:\\Program Files\\Orvanta\\orvanta.exe"_s;
    // In the lines, and only there, ^ stands for a double quote.
    const struct {
      QString line;
      QString text;
    } rows[] = {
        {u"orvanta"_s, u""_s},
        {u"orvanta  "_s, u""_s},
        {u"orvanta.exe D:\\my  game.apk "_s, u"D:\\my  game.apk "_s},
        {u"^C:\\Program Files\\Orvanta\\orvanta.exe^ \t ^D:\\a b.apk^ x"_s, u"^D:\\a b.apk^ x"_s},
        {u"^C:\\Other Files\\orvanta.exe^ D:\\包 b.apk"_s, u"D:\\包 b.apk"_s},
        {program + u" D:\\my game.apk"_s, u"D:\\my game.apk"_s},
        {u"c:\\program files\\orvanta\\ORVANTA D:\\x"_s, u"D:\\x"_s},
        {program, u""_s},
        {u"C:\\Program D:\\x"_s, u"D:\\x"_s},
        {u"C:\\Progra~1\\Orvanta\\orvanta.exe D:\\my game.apk"_s, u"D:\\my game.apk"_s},
        {program + u"x y"_s, u"Files\\Orvanta\\orvanta.exex y"_s},
    };
    for (const auto& row : rows) {
      const QString text = textBehindProgram(QString(row.line).replace(u'^', u'"'), program);
      QCOMPARE(text, QString(row.text).replace(u'^', u'"'));
    }
  }

  void aChildGetsItsLineAndOneHandle() {
    SECURITY_ATTRIBUTES inheritable = {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    QVERIFY(::CreatePipe(&readEnd, &writeEnd, &inheritable, 0));
    Run other(testChild(u"hang"_s));
    ::CloseHandle(writeEnd);
    QVERIFY(other.waitForOutput());
    const BOOL held = ::PeekNamedPipe(readEnd, nullptr, 0, nullptr, nullptr, nullptr);
    ::CloseHandle(readEnd);
    QVERIFY2(!held, "the child got another handle too");

    const QString line = testChild(u"state \"a  b\" c\\\"  'ä包 ^%PATH%"_s);
    Run run(line);
    QVERIFY2(run.waitForEnd(), "a child held the pipe of another");
    QCOMPARE(QString::fromUtf8(run.output), u"line %1\r\ninput 0\r\nflags 257\r\nshow 0\r\n"_s.arg(line));
    other.child->kill();
    QVERIFY(other.waitForEnd());
  }

  void aScriptRuns() {
    QTemporaryDir base;
    const QString name = u"\\\\apkinfo.bat"_s;
    const QString text = u"@echo OFF\r\nREM 包\r\necho out\r\necho err 1>&2\r\n"_s;
    for (const QString& folder : {u"plain"_s, u"a & b"_s}) {
      const QString temp = QDir::toNativeSeparators(base.filePath(folder));
      QVERIFY(QDir().mkdir(temp));
      qputenv("TMP", temp.toUtf8());
      QFile file(temp + name);
      QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(1000, 'x')) > 0);  // an old one
      file.close();
      {
        const ScriptPlace place(text);
        QCOMPARE(place.failure(), QString());
        QCOMPARE(place.commandLine(), folder == u"plain" ? temp + name : u'"' + temp + name + u'"');
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "@chcp 65001 >nul\r\n" + text.toUtf8());
        file.close();
        Run run(place.commandLine());
        QVERIFY(run.waitForEnd());
        QCOMPARE(run.output, "out\r\nerr \r\n");
      }
      QVERIFY(!file.exists());
      QVERIFY(QDir().mkdir(file.fileName()));
      {
        const ScriptPlace place(text);
        QVERIFY(!place.failure().isEmpty() && place.commandLine().isEmpty());
      }
      QVERIFY2(QDir().rmdir(file.fileName()), "what stood in the way is not ours to remove");
    }
  }

  void registry() {
    const QString key = u"Orvanta test\\shell"_s;
    const struct {
      const wchar_t* root;
      HKEY handle;
      QString path;
      QString type;
      QString subkey;
      QString name;
      DWORD written;
    } rows[] = {
        {L"HKCU", HKEY_CURRENT_USER, u"\\Command\\"_s, u"REG_SZ"_s, u"\\Command"_s, u""_s, REG_SZ},
        {L"HKCU", HKEY_CURRENT_USER, u"\\AppliesTo"_s, u""_s, u""_s, u"AppliesTo"_s, REG_SZ},
        {L"HKCR", HKEY_CLASSES_ROOT, u"\\Icon"_s, u"REG_EXPAND_SZ"_s, u""_s, u"Icon"_s, REG_EXPAND_SZ},
    };
    const QString value = u"C:\\A b\\包\\orvanta.exe %1"_s;
    const auto wide = [](const QString& text) { return text.toStdWString(); };
    for (const auto& row : rows) {
      QVERIFY(RegWrite(QString::fromWCharArray(row.root) + u'\\' + key + row.path, value, row.type));
      std::array<wchar_t, 100> text = {};
      DWORD bytes = sizeof(text);
      DWORD type = 0;
      QCOMPARE(::RegGetValueW(row.handle, wide(key + row.subkey).c_str(), wide(row.name).c_str(),
                              RRF_RT_ANY | RRF_NOEXPAND, &type, text.data(), &bytes),
               ERROR_SUCCESS);
      QCOMPARE(QString::fromWCharArray(text.data()), value);
      QCOMPARE(type, row.written);
      ::RegDeleteTreeW(row.handle, L"Orvanta test");
    }
    QVERIFY(!RegWrite(u"HKXX\\a\\b"_s, value));
    QVERIFY(!RegWrite(u"HKCU\\Orvanta test\\a"_s, value, u"REG_NONE"_s));
  }
};

QTEST_GUILESS_MAIN(SystemTest)
#include "system_test.moc"
