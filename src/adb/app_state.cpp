#include "adb/app_state.h"

#include "adb/device_names.h"
#include "adb/installed_build.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

/// "F 5 1611234567 /sdcard/a b": size, time and path. Nothing for any other line.
std::optional<DeviceFile> fileIn(QStringView line) {
  if (!line.startsWith(u"F ")) return std::nullopt;
  const qsizetype second = line.indexOf(u' ', 2);
  const qsizetype third = second < 0 ? -1 : line.indexOf(u' ', second + 1);
  if (third < 0 || line.mid(third + 1, 1) != u"/") return std::nullopt;
  bool sized = false;
  bool timed = false;
  DeviceFile file;
  file.size = line.mid(2, second - 2).toLongLong(&sized);
  file.time = line.mid(second + 1, third - second - 1).toLongLong(&timed);
  file.path = line.mid(third + 1).toString();
  if (!sized || !timed || file.size < 0 || file.size > largestFile) return std::nullopt;
  return file;
}

QStringView withoutLineEnd(QStringView line) {
  while (line.endsWith(u'\r')) line.chop(1);
  return line;
}

}  // namespace

qint64 AppState::bytes() const {
  qint64 sum = 0;
  for (const QList<DeviceFile>* files : {&packageFiles, &expansionFiles, &data})
    for (const DeviceFile& file : *files) sum += file.size;
  return sum;
}

AppState appStateIn(const QString& reply, const QString& package) {
  AppState state;
  const QString expansion = obbPathOnDevice(package) + u'/';
  const QString data = dataPathOnDevice(package) + u'/';
  qsizetype table = -1;  // where the figures of the storage begin
  for (const QStringView part : QStringView(reply).tokenize(u'\n')) {
    const QStringView line = withoutLineEnd(part);
    const QStringView words = line.trimmed();
    if (const auto file = fileIn(line)) {
      QList<DeviceFile>& files = file->path.startsWith(expansion) ? state.expansionFiles
                                 : file->path.startsWith(data)    ? state.data
                                                                  : state.packageFiles;
      files << *file;
    } else if (words == u"end") {
      state.whole = true;
    } else if (line.startsWith(appFilesRoot)) {
      // The two folders that all of it is in are not below themselves.
      if (line.startsWith(expansion) || line.startsWith(data)) state.folders << line.toString();
    } else if (words.startsWith(u"versionCode=")) {
      if (state.build.isEmpty()) state.build = installedBuildIn(words.toString());
    } else if (words.startsWith(u"versionName=")) {
      if (state.version.isEmpty()) state.version = words.mid(12).toString();
    } else if (words.startsWith(u"Filesystem")) {
      table = part.data() - reply.constData();
    } else if (!words.isEmpty() && table < 0) {
      state.complaints << words.toString();
    }
  }
  if (table >= 0) state.room = storageRoomIn(reply.mid(table));
  if (state.packageFiles.isEmpty()) state.build.clear();
  // What cannot be read is told of with the files and with the folders.
  state.complaints.removeDuplicates();
  return state;
}

HeadsetIdentity headsetIn(const QString& reply) {
  const QStringList lines = reply.split(u'\n');
  // An error of adb is one line.
  if (lines.size() < 2 || lines[1].trimmed().contains(u' ')) return {};
  return {lines[0].trimmed(), lines[1].trimmed()};
}

}  // namespace orvanta
