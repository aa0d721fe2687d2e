#include "core/console.h"

#include <QRegularExpression>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>

using namespace Qt::StringLiterals;
using namespace orvanta;

class ConsoleTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void holdsTheTextAsWritten() {
    ConsoleText written;
    Console console(u"txtOutputs"_s, nullptr);
    console.follow(written);
    written.append(u"one\r"_s);
    QTRY_COMPARE(console.toPlainText(), u"one"_s);  // half a line end does not count yet
    written.append(u"\ntwo"_s);
    written.say(u"三"_s);
    QCOMPARE(console.Text(), u"one\r\ntwo\r\n三\r\n"_s);
    QCOMPARE(console.SelStart(), console.Text().size());
    QTRY_COMPARE(console.toPlainText(), u"one\ntwo\n三\n"_s);
    written.setText(u"\r\nnew\r\n"_s);
    QCOMPARE(console.Text(), u"\r\nnew\r\n"_s);
    QTRY_COMPARE(console.toPlainText(), u"\nnew\n"_s);
  }

  void followsTheEnd() {
    ConsoleText written;
    Console console(u"txtOutputs"_s, nullptr);
    console.follow(written);
    console.resize(400, 100);
    console.show();
    for (int i = 0; i < 500; ++i) written.append(u"line %1\r\n"_s.arg(i));
    QTRY_COMPARE(console.document()->blockCount(), 501);
    QTRY_VERIFY(console.cursorRect(QTextCursor(console.document()->lastBlock())).bottom() <=
                console.viewport()->height());
    // The reason that the end has pushed out of view, until more is written.
    written.pointOut(u"ine 250"_s);
    const auto topText = [&console] { return console.cursorForPosition({0, 0}).block().text(); };
    QTRY_COMPARE(topText(), u"line 249"_s);
    written.say(u"more"_s);
    QTRY_VERIFY(topText() > u"line 4"_s);
  }

  void oddTextStaysReadable() {
    ConsoleText written;
    Console console(u"txtOutputs"_s, nullptr);
    console.follow(written);
    const QString endless(1'000'000, u'x');
    written.append(QString::fromUtf16(u"nul\0 escape\x1b", 12) + endless);
    QTRY_VERIFY_WITH_TIMEOUT(console.toPlainText().size() > endless.size(), 20'000);
    QVERIFY(console.toPlainText().startsWith(u"nul\u2400 escape\u241b"_s));
    // A line of millions of characters would stall the window each time it is laid out.
    QVERIFY(console.document()->lastBlock().length() < 5000);
    QCOMPARE(console.Text().size(), endless.size() + 12);
  }

  void keepsTheNewestOfEndlessText() {
    for (const QString& line : {u"10-27 21:15:09.001  1234  5678 I Manager: 一 line as a log has it %1\r\n"_s,
                                u"%1\r\n"_s, u"%1 "_s}) {
      ConsoleText written;
      Console console(u"txtOutputs"_s, nullptr);
      console.follow(written);
      console.resize(600, 200);
      console.show();
      qsizetype length = 0;
      QString newest;
      for (int i = 0; length < 36 * 1024 * 1024; ++i) {
        newest = line.arg(i, 9);
        written.append(newest.repeated(5000));
        length += newest.size() * 5000;
        if (i % 10 == 0) QCoreApplication::processEvents();
      }
      written.say(u"last"_s);
      length += 8;
      QTRY_VERIFY(console.toPlainText().endsWith(u"\nlast\n"_s));
      QVERIFY(console.toPlainText().remove(u'\n').endsWith(newest.remove(u"\r\n"_s).repeated(3) + u"last"_s));
      QVERIFY(console.document()->blockCount() < 30'000 && console.document()->characterCount() < 3'000'000);

      const QRegularExpression notice(
          u"^（前面 (\\d+) 个字符已丢弃）\\(\\1 earlier characters were dropped\\)"_s);
      const QString text = console.Text();
      const QString head = notice.match(text).captured();
      const qsizetype dropped = notice.match(text).captured(1).toLongLong();
      const qsizetype kept = text.size() - head.size() - 2;
      QCOMPARE(dropped + kept, length);
      QVERIFY(kept >= 32 * 1024 * 1024 && kept < 33 * 1024 * 1024);
      QCOMPARE(console.SelStart(), text.size());
      QVERIFY(console.toPlainText().startsWith(head + u' '));  // and how much can be scrolled to

      // Scrolled up again and again, all that was kept comes into view; what the user looks at stays in
      // sight.
      QScrollBar* bar = console.verticalScrollBar();
      const auto inSight = [&console](const QString& wanted) {
        QTextCursor first = console.cursorForPosition({0, 0});
        return first.block().text() == wanted || first.block().next().text() == wanted;
      };
      const int pages = line.size() < 5 ? 2 : 100;  // millions of lines would take the test too long
      for (int page = 0; page < pages && console.document()->firstBlock().text() != head; ++page) {
        const QString top = console.document()->findBlockByNumber(1).text();
        bar->setValue(0);
        QVERIFY(bar->value() > 0 && inSight(top));
        bar->setValue(1);
      }
      const QString shown = console.toPlainText().section(u'\n', 1).remove(u'\n');
      QVERIFY(shown.size() > 500'000 && QString(text).remove(u'\r').remove(u'\n').endsWith(shown));
      QCOMPARE(console.document()->firstBlock().text() == head, pages > 2);
    }
  }
};

QTEST_MAIN(ConsoleTest)
#include "console_test.moc"
