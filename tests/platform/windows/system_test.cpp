#include <windows.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <cstdio>
#include <string_view>

#include "platform/run.h"
#include "platform/script_place.h"
#include "platform/windows/program_name.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

/// What only Windows has: the raw command line, handles, batch files.
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
        {u"orvanta  "_s, u""_s},
        {u"orvanta.exe D:\\my  game.apk "_s, u"D:\\my  game.apk "_s},
        {u"^C:\\Program Files\\Orvanta\\orvanta.exe^ \t ^D:\\a b.apk^ x"_s, u"^D:\\a b.apk^ x"_s},
        {u"^C:\\Other Files\\orvanta.exe^ D:\\包 b.apk"_s, u"D:\\包 b.apk"_s},
        {program + u" D:\\my game.apk"_s, u"D:\\my game.apk"_s},
        {u"c:\\program files\\orvanta\\ORVANTA D:\\x"_s, u"D:\\x"_s},
        {program, u""_s},
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
    Run other(testChild(u"number hang"_s));
    ::CloseHandle(writeEnd);
    QVERIFY(other.waitForOutput());
    const BOOL held = ::PeekNamedPipe(readEnd, nullptr, 0, nullptr, nullptr, nullptr);
    ::CloseHandle(readEnd);
    QVERIFY2(!held, "the child got another handle too");

    const QString line =
        u"\"%1\" state \"a  b\" c\\\"  'ä包 ^%PATH%"_s.arg(QCoreApplication::applicationFilePath());
    Run run(line);
    QVERIFY2(run.waitForEnd(), "a child held the pipe of another");
    QCOMPARE(QString::fromUtf8(run.output), u"line %1\r\ninput 0\r\nflags 257\r\nshow 0\r\n"_s.arg(line));
  }

  void aScriptRuns() {
    QTemporaryDir base;
    const QString text = u"@echo OFF\r\nREM 包\r\necho out\r\necho err 1>&2\r\n"_s;
    for (const QString& folder : {u"plain"_s, u"a & b"_s}) {
      const QString temp = QDir::toNativeSeparators(base.filePath(folder));
      QVERIFY(QDir().mkdir(temp));
      qputenv("TMP", temp.toUtf8());
      const QString path = temp + u"\\\\apkinfo.bat"_s;
      QFile file(path);
      QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(1000, 'x')) > 0);  // an old one
      file.close();
      {
        const ScriptPlace place(text);
        QCOMPARE(place.commandLine(), folder == u"plain" ? path : u'"' + path + u'"');
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "@chcp 65001 >nul\r\n" + text.toUtf8());
        file.close();
        Run run(place.commandLine());
        QVERIFY(run.waitForEnd());
        QCOMPARE(run.output, "out\r\nerr \r\n");
      }
      QVERIFY(!file.exists());
      QVERIFY(QDir().mkdir(path));
      QVERIFY(!ScriptPlace(text).failure().isEmpty());
      QVERIFY2(QDir().rmdir(path), "what stood in the way is not ours to remove");
    }
  }
};

/// This program is also its own child, which prints how it was started.
int main(int argc, char** argv) {
  if (argc > 1 && argv[1] == std::string_view("state")) {
    STARTUPINFOA startup = {};
    ::GetStartupInfoA(&startup);
    std::printf("line %s\ninput %d\nflags %lu\nshow %d\n", ::GetCommandLineA(),
                ::GetStdHandle(STD_INPUT_HANDLE) != nullptr, startup.dwFlags, startup.wShowWindow);
    return 0;
  }
  const QCoreApplication application(argc, argv);
  SystemTest test;
  return QTest::qExec(&test, argc, argv);
}

#include "system_test.moc"
