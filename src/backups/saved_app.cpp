#include "backups/saved_app.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>

#include "adb/device_names.h"
#include "backups/copy_kind.h"
#include "backups/copy_note.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

/// Whether this looks like a package's name, with a point in it; other folders are somebody's documents.
/// Names that end in `.old` or `.partial` are earlier or unfinished copies, not packages.
bool isPackageLike(const QString& name) {
  static const QRegularExpression package(u"^[A-Za-z]\\w*(\\.\\w+)+$"_s);
  static const QRegularExpression setAside(u"^(.+)\\.(?:old|partial)[0-9]*$"_s);
  const QRegularExpressionMatch match = setAside.match(name);
  if (match.hasMatch() && package.match(match.captured(1)).hasMatch()) return false;
  return package.match(name).hasMatch() && isFitPackageName(name);
}

BackupFile plainFile(const QString& path, const QString& onHeadset, qint64 size) {
  BackupFile file;
  file.path = path;
  file.onHeadset = onHeadset;
  file.size = size;
  return file;
}

/// Adds what lies below `folder/name`, which goes to the folder of that name under `part`.
void addFolder(SavedApp& saved, const QString& name, const QString& part) {
  const QString root = saved.folder + u'/';
  QDirIterator files(root + name, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    files.next();
    const QString path = files.filePath().mid(root.size());
    saved.manifest.files << plainFile(path, part + u'/' + path, files.fileInfo().size());
  }
}

std::optional<SavedApp> wholeAt(const QString& folder) {
  SavedApp saved;
  saved.folder = folder;
  if (QFileInfo::exists(folder + u'/' + manifestName)) {
    auto read = manifestIn(folder, manifestName);
    if (auto* manifest = std::get_if<BackupManifest>(&read)) saved.manifest = std::move(*manifest);
    if (const auto* problem = std::get_if<Bilingual>(&read)) saved.problem = *problem;
    return saved;
  }
  if (!QFileInfo::exists(folder + u'/' + recordName)) return std::nullopt;
  saved.problem = {u"这个备份没有完成，再备份到同一文件夹会接着进行"_s,
                   u"this backup was not completed; another one to the same folder goes on with it"_s};
  return saved;
}

/// The copy in a folder that has its package's name.
std::optional<SavedApp> namedCopyAt(const QString& path) {
  const QFileInfo info(path);
  const CopyKind kind = isPackageLike(info.fileName()) ? copyKindAt(path) : CopyKind::Nothing;
  if (kind != CopyKind::Data && kind != CopyKind::ExpansionFiles) return std::nullopt;
  const bool data = kind == CopyKind::Data;
  SavedApp saved{data ? SavedApp::Kind::Data : SavedApp::Kind::ExpansionFiles, info.path(), {}};
  saved.manifest.package = info.fileName();
  if (isUnderway(path)) saved.problem = copyUnderway;
  addFolder(saved, info.fileName(), data ? u"data"_s : u"obb"_s);
  return saved;
}

}  // namespace

QString SavedApp::title() const {
  QString name = manifest.name();
  if (name.isEmpty()) name = QFileInfo(basePath().isEmpty() ? folder : basePath()).fileName();
  if (!manifest.version.isEmpty()) name += u' ' + manifest.version;
  if (!manifest.build.isEmpty()) name += u" (%1)"_s.arg(manifest.build);
  return name;
}

QList<HashedFile> SavedApp::hashedFiles() const {
  QList<HashedFile> files;
  for (const BackupFile& file : manifest.files) files << HashedFile{pathOf(file), file.size, file.sha256};
  return files;
}

QString SavedApp::basePath() const {
  const QList<BackupFile> packages = manifest.filesOf(u"apk"_s);
  if (packages.isEmpty()) return {};
  const auto base = std::find_if(packages.begin(), packages.end(),
                                 [](const BackupFile& file) { return file.path.endsWith("/base.apk"_L1); });
  return pathOf(base == packages.end() ? packages.constFirst() : *base);
}

QList<SavedApp> savedAppsIn(const QString& chosen) {
  const QString root = QDir::cleanPath(QDir::fromNativeSeparators(chosen));
  if (const auto whole = wholeAt(root)) return {*whole};
  if (const auto copy = namedCopyAt(root)) return {*copy};
  QList<SavedApp> found;
  const QDir folder(root);
  const QFileInfoList packages = folder.entryInfoList({u"*.apk"_s}, QDir::Files | QDir::Hidden);
  for (const QFileInfo& info : packages) {
    SavedApp saved{SavedApp::Kind::Package, root, {}};
    saved.manifest.files << plainFile(info.fileName(), u"apk/"_s + info.fileName(), info.size());
    if (isUnderway(info.filePath())) saved.problem = copyUnderway;
    found << saved;
  }
  const QStringList names = folder.entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
  for (const QString& name : names) {
    const QString path = root + u'/' + name;
    if (const auto whole = wholeAt(path)) {
      found << *whole;
    } else if (const auto copy = namedCopyAt(path)) {
      found << *copy;
    }
  }
  return found;
}

void addExpansionFiles(SavedApp& saved) {
  const QString& package = saved.manifest.package;
  if (saved.kind != SavedApp::Kind::Package || !isPackageLike(package)) return;
  const QString beside = saved.folder + u'/' + package;
  if (copyKindAt(beside) != CopyKind::ExpansionFiles) return;
  addFolder(saved, package, u"obb"_s);
  if (isUnderway(beside)) saved.problem = copyUnderway;
}

}  // namespace orvanta
