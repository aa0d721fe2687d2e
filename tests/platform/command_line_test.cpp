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
        {"", {}},
        {" \t ", {}},
        {"  adb\t devices  ", {u"adb"_s, u"devices"_s}},
        {"^/opt/a b/adb^ install -r ^x y.apk^", {u"/opt/a b/adb"_s, u"install"_s, u"-r"_s, u"x y.apk"_s}},
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
    QCOMPARE(quotedArgument(u"/home/x/My Game.apk"_s), u"\"/home/x/My Game.apk\""_s);
    QCOMPARE(quotedArgument(u"a\\b\\\"c\\"_s), u"\"a\\b\\\\\\\"c\\\\\""_s);
    // Every text of up to six of the characters that matter.
    const QString alphabet = u"\\\" \ta"_s;
    for (int length = 0; length <= 6; ++length) {
      int texts = 1;
      for (int i = 0; i < length; ++i) texts *= int(alphabet.size());
      for (int number = 0; number < texts; ++number) {
        QString text;
        for (int i = 0, rest = number; i < length; ++i, rest /= int(alphabet.size())) {
          text += alphabet[rest % alphabet.size()];
        }
        const QStringList expected = {u"p q"_s, text, u"next"_s};
        QCOMPARE(splitCommandLine(u"\"p q\" "_s + quotedArgument(text) + u" next"_s), expected);
      }
    }
  }
};

QTEST_GUILESS_MAIN(CommandLineTest)
#include "command_line_test.moc"
