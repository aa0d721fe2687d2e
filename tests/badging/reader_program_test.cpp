// The program's own reader of packages, as the program calls it: paths of every kind, and files that others
// write.

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include "platform/file_moves.h"
#include "sample_package.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class ReaderProgramTest : public QObject {
  Q_OBJECT

  QTemporaryDir m_folder;

  static QString read(const QString& file) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(BADGING_PROGRAM), {u"d"_s, u"badging"_s, QDir::toNativeSeparators(file)});
    process.waitForFinished(-1);
    if (process.exitStatus() != QProcess::NormalExit) return u"crash"_s;
    return QString::number(process.exitCode()) + u' ' + QString::fromUtf8(process.readAll());
  }

 private Q_SLOTS:
  void paths() {
    const QString deep = u"/a folder of some length, to reach the limit"_s.repeated(8);
    for (const QString& place : {u"/plain"_s, u"/it's {a} (b) & c"_s, u"/游戏 🏌 é"_s, deep}) {
      const QString folder = m_folder.path() + place;
      QVERIFY(QDir().mkpath(folder));
      const SamplePackage sample{.label = u"Étoile 星 🏌"_s};
      QCOMPARE(sample.write(m_folder.filePath(u"new.apk"_s)), QString());
      QVERIFY(renameNoReplace(m_folder.filePath(u"new.apk"_s), folder + u"/游戏.apk"_s));
      const QString text = read(folder + u"/游戏.apk"_s);
      QVERIFY2(text.startsWith(u"0 package: name='com.example.app' versionCode='1'"_s), qPrintable(text));
      QVERIFY2(text.contains(u"application-label:'Étoile 星 🏌'"_s), qPrintable(text));
    }
    QVERIFY(read(m_folder.filePath(u"absent.apk"_s)).startsWith(u"1 ERROR: dump failed"_s));
    QVERIFY(read(m_folder.path()).startsWith(u"1 ERROR: dump failed"_s));
  }

  /// Whoever writes it goes on; what is there of it by then is told or refused.
  void whileWritten() {
    const QString file = m_folder.filePath(u"written.apk"_s);
    QCOMPARE(SamplePackage{}.write(file), QString());
    const QByteArray whole = readFile(file);
    QFile writer(file);
    QVERIFY(writer.open(QIODevice::ReadWrite));
    QVERIFY(read(file).startsWith(u"0 package:"_s));
    for (qint64 size = whole.size() - 1; size > 0; size /= 2) {
      QVERIFY(writer.resize(size));
      QVERIFY2(read(file).startsWith(u"1 ERROR: dump failed"_s), qPrintable(read(file)));
    }
    QVERIFY(writer.seek(0) && writer.write(whole) == whole.size() && writer.flush());
    QVERIFY(read(file).startsWith(u"0 package:"_s));
  }
};

QTEST_GUILESS_MAIN(ReaderProgramTest)
#include "reader_program_test.moc"
