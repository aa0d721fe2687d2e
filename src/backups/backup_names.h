#pragma once

#include <QSet>
#include <QString>

/// Names on the desktop for what comes from a headset. They are fit for the file systems of both kinds of
/// desktop, whichever it is, since a backup may go from one to the other.
namespace orvanta {

/// `name` as a file can be called everywhere: characters that Windows refuses become an underline, so do
/// blanks and dots at its end; what is a device to Windows gets one in front. At most `most` bytes of UTF-8,
/// and never empty. A name that is fit comes back as it is.
QString safeName(const QString& name, qsizetype most = 255);

/// "LABEL VERSION (BUILD) DATE", where parts that are empty are left out; it has room for a number at its
/// end.
QString backupFolderName(const QString& label, const QString& version, const QString& build,
                         const QString& date);

/// The path of a folder in `parent` that does not exist yet: `name`, or `name` with a number appended. Empty
/// if there are too many.
QString freeFolder(const QString& parent, const QString& name);

/// Gives each path on a headset a path of its own on the desktop.
class LocalPaths {
 public:
  /// `path` with slashes, each name in it safe. Two that would be the same file where letter case does not
  /// count get different names. The same path gives another one each time.
  QString add(const QString& path);

 private:
  QSet<QString> m_taken;
};

}  // namespace orvanta
