#include "desktop/file_manager_entry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTimer>
#include <chrono>
#include <filesystem>
#include <system_error>

#include "adb/host.h"
#include "core/paths.h"
#include "desktop/desktop_entry.h"
#include "desktop/registry_entry.h"
#include "platform/awaited.h"
#include "platform/child_process.h"
#include "platform/command_line.h"
#include "platform/shell_verb.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

/// A shell verb under the registry's class root; it needs an administrator.
class RegistryEntry final : public FileManagerEntry {
 public:
  bool writeCommand() override { return write(0); }
  QCoro::Task<> writeAppliesTo() override {
    write(1);
    co_return;
  }
  bool writeIcon() override { return write(2); }

 private:
  static bool write(size_t index) {
    const QString name = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
    const RegistryWrite entry =
        shellVerbWrites(executablePath(Host::current().applicationFolder, name))[index];
    return RegWrite(entry.Path, entry.Value, entry.Typ);
  }
};

/// Writes `content` to `path`, making folders as needed. Returns whether the file now has it.
bool writeWhole(const QString& path, const QByteArray& content) {
  if (!QDir().mkpath(QFileInfo(path).path())) return false;
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return false;
  file.write(content);
  if (!file.commit()) return false;
  QFile written(path);
  return written.open(QIODevice::ReadOnly) && written.readAll() == content;
}

/// Runs one of the desktop's own tools to its end. Its output does not matter, nor whether it exists.
QCoro::Task<> runTool(QString name, QString folder) {
  const std::unique_ptr<ChildProcess> tool = ChildProcess::create();
  if (tool->start(name + u' ' + quotedArgument(folder))) co_return;
  // No window of ours is shown now, so nobody could stop a tool that hangs.
  QTimer::singleShot(std::chrono::seconds(10), tool.get(), &ChildProcess::kill);
  co_await Emitted(tool.get(), &ChildProcess::finished);
}

/// A desktop entry for this user alone, with its icons.
class UserDesktopEntry final : public FileManagerEntry {
 public:
  bool writeCommand() override {
    const QString text = desktopEntry(QCoreApplication::applicationFilePath());
    return writeWhole(applications() + u'/' + desktopId + u".desktop"_s, text.toUtf8());
  }

  QCoro::Task<> writeAppliesTo() override {
    // The type and its file names come with the desktop. The user's copy of them is updated first, since the
    // list of programs by type is built from it.
    const QString types = dataHome() + u"/mime"_s;
    if (FolderExists(types + u"/packages"_s)) co_await runTool(u"update-mime-database"_s, types);
    co_await runTool(u"update-desktop-database"_s, applications());
  }

  bool writeIcon() override {
    const QString theme = dataHome() + u"/icons/hicolor"_s;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
      QFile picture(u":/icon/orvanta_%1.png"_s.arg(size));
      const QString place = theme + u"/%1x%1/apps/"_s.arg(size) + desktopId + u".png"_s;
      if (!picture.open(QIODevice::ReadOnly) || !writeWhole(place, picture.readAll())) return false;
    }
    // A theme cache older than its folder is ignored, so the new icons are seen.
    std::error_code ignored;
    std::filesystem::last_write_time(QFileInfo(theme).filesystemFilePath(),
                                     std::filesystem::file_time_type::clock::now(), ignored);
    return true;
  }

 private:
  static QString applications() {
    return QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation);
  }
  static QString dataHome() { return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation); }
};

}  // namespace

std::unique_ptr<FileManagerEntry> FileManagerEntry::create() {
  if (nativeShellVerbHome() == ShellVerbHome::Registry) return std::make_unique<RegistryEntry>();
  return std::make_unique<UserDesktopEntry>();
}

}  // namespace orvanta
