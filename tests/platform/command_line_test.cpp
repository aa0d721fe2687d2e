#include "platform/command_line.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace orvanta;

class CommandLineTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void split() {
    // In the lines, and only there, ^ stands for a double quote.
    const struct {
      const char* line;
      QStringList words;
    } rows[] = {
        {" \t ", {}},
        {"  adb\t devices  ", {u"adb"_s, u"devices"_s}},
        {"^C:\\a b\\^adb x", {u"C:\\a b\\adb"_s, u"x"_s}},
        {"^^ ^^", {u""_s, u""_s}},
        {"p a^b c^d", {u"p"_s, u"ab cd"_s}},
        {"p ^open end ", {u"p"_s, u"open end "_s}},
        {"p \\ C:\\x\\y \\\\", {u"p"_s, u"\\"_s, u"C:\\x\\y"_s, u"\\\\"_s}},
        {"p a\\^b a\\\\^b c^ a\\\\\\^b", {u"p"_s, u"a\"b"_s, u"a\\b c"_s, u"a\\\"b"_s}},
        {"p ^a ^^b^^ c^ d", {u"p"_s, u"a \"b\" c"_s, u"d"_s}},
        {"p ^^^^ ^a\\\\\\\\^ b", {u"p"_s, u"\""_s, u"a\\\\"_s, u"b"_s}},
        {"adb shell ^ls 'a b'; echo $X^", {u"adb"_s, u"shell"_s, u"ls 'a b'; echo $X"_s}},
    };
    for (const auto& row : rows) {
      QCOMPARE(splitCommandLine(QString::fromUtf8(row.line).replace(u'^', u'"')), row.words);
    }
  }

  void quotedTextComesBack() {
    // Every text of up to six of the characters that matter.
    QStringList texts{QString()};
    for (qsizetype i = 0; i < texts.size(); ++i) {
      const QString text = texts[i];
      QCOMPARE(splitCommandLine(u"\"p q\" "_s + quotedArgument(text) + u" next"_s),
               QStringList({u"p q"_s, text, u"next"_s}));
      if (text.size() == 6) continue;
      for (const QChar c : u"\\\" \ta"_s) texts << text + c;
    }
  }
};

QTEST_GUILESS_MAIN(CommandLineTest)
#include "command_line_test.moc"
