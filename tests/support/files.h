#pragma once

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>

namespace orvanta {

/// Writes a file and makes its folder. False on failure.
inline bool writeFile(const QString& path, const QByteArray& content) {
  QDir().mkpath(QFileInfo(path).path());
  QFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/// "(none)" if there is no readable file.
inline QByteArray readFile(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

/// The content of every file below `folder` by its path there; "(none)" for an empty folder.
inline QMap<QString, QByteArray> tree(const QString& folder) {
  QMap<QString, QByteArray> found;
  QDirIterator all(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDirIterator::Subdirectories);
  while (all.hasNext()) {
    const QString path = all.next();
    if (!all.fileInfo().isDir() || QDir(path).isEmpty())
      found.insert(QDir(folder).relativeFilePath(path), readFile(path));
  }
  return found;
}

/// The same in one line, such as "a/x.APK=package y.zip=archive".
inline QString told(const QMap<QString, QByteArray>& tree) {
  QStringList files;
  for (auto file = tree.begin(); file != tree.end(); ++file)
    files << file.key() + QLatin1Char('=') + QString::fromUtf8(file.value());
  return files.join(QLatin1Char(' '));
}

}  // namespace orvanta
