#include "desktop/file_manager_entry.h"

#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include "desktop/desktop_entry.h"
#include "platform/shell_verb.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// What `program` prints on both of its outputs.
QString said(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.start(program, arguments);
  process.waitForFinished();
  return QString::fromUtf8(process.readAll());
}

bool isMissing(const QString& tool) {
  return QStandardPaths::findExecutable(tool).isEmpty();
}

/// The lines of an entry that do not depend on where the program is.
QStringList placeless(const QString& entry) {
  QStringList lines = entry.split(u'\n');
  lines.removeIf(
      [](const QString& line) { return line.startsWith(u"Exec="_s) || line.startsWith(u"TryExec="_s); });
  return lines;
}

}  // namespace

class FileManagerEntryTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("HOME", m_folder->path().toUtf8());
    qputenv("XDG_DATA_HOME", m_folder->filePath(u"data home"_s).toUtf8());
  }

  void awkwardFolders() {
    const std::pair<QString, QString> rows[] = {
        {u" a  b=头显é;c&d#e* "_s, u"\"/ a  b=头显é;c&d#e* /o\" %F"_s},
        {u"a\"b'c"_s, u"\"/a\\\\\"b'c/o\" %F"_s},
        {u"50%f"_s, u"env \"/50%%f/o\" %F"_s},
        {u"$HOME`id`"_s, u"\"/\\\\$HOME\\\\`id\\\\`/o\" %F"_s},
        {u"a\\nb\\"_s, u"\"/a\\\\\\\\nb\\\\\\\\/o\" %F"_s},
        {u"a\nb\tc"_s, u"\"/a\\nb\\tc/o\" %F"_s},
    };
    for (const auto& [folder, exec] : rows) QCOMPARE(execValue(u'/' + folder + u"/o"_s), exec);
    if (isMissing(u"gio"_s) || isMissing(u"desktop-file-validate"_s))
      QSKIP("needs gio and desktop-file-utils");

    // The desktop itself reads the entry, starts the program, and hands over the path of the package.
    for (const auto& [folder, exec] : rows) {
      init();
      const QString program = m_folder->filePath(folder) + u"/o"_s;
      const QString started = m_folder->filePath(u"started"_s);
      qputenv("ORVANTA_TEST_STARTED", started.toUtf8());
      QVERIFY(writeFile(program,
                        "#!/bin/sh\nprintf '%s|' \"$0\" \"$@\" >\"$ORVANTA_TEST_STARTED.part\"\n"
                        "mv \"$ORVANTA_TEST_STARTED.part\" \"$ORVANTA_TEST_STARTED\"\n"));
      QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
      const QString entry = m_folder->filePath(desktopId + u".desktop"_s);
      QVERIFY(writeFile(entry, desktopEntry(program).toUtf8()));
      QCOMPARE(said(u"desktop-file-validate"_s, {entry}), QString());
      const QString package = m_folder->filePath(u"a  'b' $c 100%.apk"_s);
      QVERIFY(writeFile(package, ""));
      QCOMPARE(said(u"gio"_s, {u"launch"_s, entry, package}), QString());
      QTRY_COMPARE(QString::fromUtf8(readFile(started)), program + u'|' + package + u'|');
    }
  }

  void packagedEntryIsTheSame() {
    const QString folder = QStringLiteral(ORVANTA_LINUX_PACKAGING "/") + desktopId;
    const QString packaged = QString::fromUtf8(readFile(folder + u".desktop"_s));
    QCOMPARE(placeless(packaged), placeless(desktopEntry(u"/opt/orvanta"_s)));
    const QByteArray metainfo = readFile(folder + u".metainfo.xml.in"_s);
    const QByteArray id = desktopId.toUtf8();
    QVERIFY(metainfo.contains("<id>" + id + "</id>"));
    QVERIFY(metainfo.contains("<launchable type=\"desktop-id\">" + id + ".desktop</launchable>"));
  }

  void writtenForTheUser() {
    if (nativeShellVerbHome() != ShellVerbHome::DesktopEntries) QSKIP("this system has a registry");
    const auto entry = FileManagerEntry::create();
    QVERIFY(entry->writeCommand());
    QCoro::waitFor(entry->writeAppliesTo());
    QVERIFY(entry->writeIcon());
    const QString dataHome = m_folder->filePath(u"data home"_s);
    QCOMPARE(readFile(dataHome + u"/applications/"_s + desktopId + u".desktop"_s),
             desktopEntry(QCoreApplication::applicationFilePath()).toUtf8());
    QCOMPARE(readFile(dataHome + u"/icons/hicolor/48x48/apps/"_s + desktopId + u".png"_s),
             readFile(u":/icon/orvanta_48.png"_s));
    if (isMissing(u"gio"_s) || isMissing(u"update-desktop-database"_s))
      QSKIP("needs gio and desktop-file-utils");
    const QString offered = said(u"gio"_s, {u"mime"_s, u"application/vnd.android.package-archive"_s});
    QVERIFY2(offered.contains(desktopId + u".desktop"_s), qPrintable(offered));
  }

  void notWritable() {
    if (nativeShellVerbHome() != ShellVerbHome::DesktopEntries) QSKIP("this system has a registry");
    // A file in place of a folder stops even an administrator.
    const QString dataHome = m_folder->filePath(u"data home"_s);
    QVERIFY(writeFile(dataHome + u"/applications"_s, "") && writeFile(dataHome + u"/icons"_s, ""));
    const auto entry = FileManagerEntry::create();
    QVERIFY(!entry->writeCommand() && !entry->writeIcon());
  }

 private:
  std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(FileManagerEntryTest)
#include "file_manager_entry_test.moc"
