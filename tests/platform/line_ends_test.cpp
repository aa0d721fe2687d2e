#include "platform/line_ends.h"

#include <QTest>

using namespace orvanta;

class LineEndsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyLineEndIsOneCrLf() {
    const struct {
      QByteArray written;
      QByteArray presented;
    } rows[] = {
        {"", ""},
        {"no end", "no end"},
        {"\n", "\r\n"},
        {"a\nb\r\nc\r\r\nd\r\r\r\n", "a\r\nb\r\nc\r\nd\r\n"},
        {"\n\n\r\n\n", "\r\n\r\n\r\n\r\n"},
        {"10%\r20%\r\r30%\n", "10%\r20%\r\r30%\r\n"},
        {"a\n\rb\r", "a\r\n\rb\r"},
        {"\r\r", "\r\r"},
        {QByteArray("\0\r\n\xff\n", 5), QByteArray("\0\r\n\xff\r\n", 6)},
    };
    for (const auto& row : rows) {
      for (qsizetype first = 0; first <= row.written.size(); ++first) {
        for (qsizetype second = first; second <= row.written.size(); ++second) {
          LineEndNormalizer lineEnds;
          QByteArray presented;
          lineEnds.feed(row.written.first(first), presented);
          lineEnds.feed(row.written.sliced(first, second - first), presented);
          lineEnds.feed(row.written.sliced(second), presented);
          lineEnds.flush(presented);
          QCOMPARE(presented, row.presented);
        }
      }
    }
  }
};

QTEST_GUILESS_MAIN(LineEndsTest)
#include "line_ends_test.moc"
