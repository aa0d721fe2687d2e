#include "core/console.h"

#include <QTest>
#include <QTextBlock>

using namespace Qt::StringLiterals;
using namespace orvanta;

class ConsoleTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void holdsTheTextAsWritten() {
    Console console(u"txtOutputs"_s, nullptr);
    connect(&console, &Console::Change, &console, &Console::moveToEnd);
    console.append(u"one\r"_s);
    QTRY_COMPARE(console.toPlainText(), u"one"_s);  // half a line end is none yet
    console.append(u"\ntwo"_s);
    console.appendLine(u"三"_s);
    QCOMPARE(console.Text(), u"one\r\ntwo\r\n三\r\n"_s);
    QCOMPARE(console.SelStart(), console.Text().size());
    QTRY_COMPARE(console.toPlainText(), u"one\ntwo\n三\n"_s);
    console.setText(u"\r\nnew\r\n"_s);
    QCOMPARE(console.Text(), u"\r\nnew\r\n"_s);
    QTRY_COMPARE(console.toPlainText(), u"\nnew\n"_s);
  }

  void followsTheEnd() {
    Console console(u"txtOutputs"_s, nullptr);
    connect(&console, &Console::Change, &console, &Console::moveToEnd);
    console.resize(400, 100);
    console.show();
    for (int i = 0; i < 500; ++i) console.append(u"line %1\r\n"_s.arg(i));
    QTRY_COMPARE(console.document()->blockCount(), 501);
    QTRY_VERIFY(console.cursorRect(QTextCursor(console.document()->lastBlock())).bottom() <=
                console.viewport()->height());
  }

  void oddTextStaysReadable() {
    Console console(u"txtOutputs"_s, nullptr);
    const QString endless(3'000'000, u'x');
    console.append(QString::fromUtf16(u"nul\0 escape\x1b", 12) + endless);
    QTRY_VERIFY_WITH_TIMEOUT(console.toPlainText().size() > endless.size(), 20'000);
    QVERIFY(console.toPlainText().startsWith(u"nul\u2400 escape\u241b"_s));
    // A line of millions of characters would stall the window each time it is laid out.
    QVERIFY(console.document()->lastBlock().length() < 5000);
    QCOMPARE(console.Text().size(), endless.size() + 12);
  }
};

QTEST_MAIN(ConsoleTest)
#include "console_test.moc"
