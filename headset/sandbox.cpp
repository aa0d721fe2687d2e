#include "sandbox.h"

#include <elf.h>
#include <unistd.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <cstring>

namespace orvanta::headset {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kFolders[] = {
    "data/app",
    "data/data",
    "data/local/tmp",
    "data/user",
    "dev",
    "mnt",
    "proc",
    "storage/emulated/0/Alarms",
    "storage/emulated/0/Android/data",
    "storage/emulated/0/Android/media",
    "storage/emulated/0/Android/obb",
    "storage/emulated/0/DCIM",
    "storage/emulated/0/Download",
    "storage/emulated/0/Movies",
    "storage/emulated/0/Music",
    "storage/emulated/0/Pictures",
    "system/bin",
    "system/etc",
    "vendor",
};

struct Link {
  const char* name;
  const char* target;
};

constexpr Link kLinks[] = {
    {"sdcard", "/storage/emulated/0"},
    {"mnt/sdcard", "/storage/emulated/0"},
    {"bin", "/system/bin"},
    {"etc", "/system/etc"},
};

/// The commands that the system services answer, through our own small program.
constexpr const char* kServiceCommands[] = {"am", "cmd",    "df",       "dumpsys", "getprop", "ip",    "ls",
                                            "pm", "monkey", "settings", "setprop", "svc",     "reboot"};

// The shell prefers its built-in programs to those on the path; these functions put ours first.
constexpr QByteArrayView kShellStart =
    "for name in df ip ls reboot svc; do eval \"$name() { /system/bin/$name \\\"\\$@\\\"; }\"; done\n"
    "unset name\n";
constexpr QByteArrayView kShellStartFile = "/system/etc/mkshrc";

constexpr const char* kProgramFolder = "/data/local/tmp";
// Every shell scans the folder, so a folder full of other files must not slow it down.
constexpr int kMostFilesLookedAt = 200;
// In the shell's own /dev: mount points there leave nothing behind in the headset's tree.
constexpr QByteArrayView kEmulatorFolder = "/dev/emulator/";

struct Emulator {
  int machine;
  const char* name;
};

/// Headers of an ELF file in this machine's byte order; the machine is 0 for any other file.
struct ElfFile {
  int machine = EM_NONE;
  bool isStatic = false;
};

template <typename Header, typename Segment>
ElfFile readElf(const QByteArray& start) {
  Header header;
  std::memcpy(&header, start.constData(), sizeof header);
  ElfFile elf{header.e_machine, true};
  const auto size = static_cast<quint64>(start.size());
  auto at = static_cast<quint64>(header.e_phoff);
  for (int i = 0; i < header.e_phnum && at <= size && size - at >= sizeof(Segment); ++i) {
    Segment segment;
    std::memcpy(&segment, start.constData() + at, sizeof segment);
    at += sizeof segment;
    if (segment.p_type == PT_INTERP) elf.isStatic = false;
  }
  return elf;
}

ElfFile readElf(const QString& path) {
  constexpr qint64 block = 4096;
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QByteArray start = file.read(block);
  if (!start.startsWith(ELFMAG) || start.size() < qsizetype{sizeof(Elf32_Ehdr)}) return {};
  if (start[EI_DATA] != (Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? ELFDATA2LSB : ELFDATA2MSB)) return {};
  if (start[EI_CLASS] == ELFCLASS32) return readElf<Elf32_Ehdr, Elf32_Phdr>(start);
  if (start.size() < qsizetype{sizeof(Elf64_Ehdr)}) return {};
  return readElf<Elf64_Ehdr, Elf64_Phdr>(start);
}

/// The emulator for another processor's programs, by e_machine. Static ones only: the desktop's libraries
/// are not visible where they run.
QMap<int, QString> findEmulators() {
  constexpr Emulator emulators[] = {{EM_AARCH64, "aarch64"}, {EM_ARM, "arm"}};
  const int own = readElf(u"/proc/self/exe"_s).machine;
  QMap<int, QString> found;
  for (const Emulator& emulator : emulators) {
    if (emulator.machine == own) continue;
    for (const QLatin1StringView form : {"qemu-%1-static"_L1, "qemu-%1"_L1}) {
      const QString path =
          QStandardPaths::findExecutable(QString(form).arg(QLatin1StringView(emulator.name)));
      if (path.isEmpty() || !readElf(path).isStatic) continue;
      found.insert(emulator.machine, path);
      break;
    }
  }
  return found;
}

/// `text` as one word of the shell.
QByteArray shellWord(const QByteArray& text) {
  return '\'' + QByteArray(text).replace('\'', "'\\''") + '\'';
}

/// Writes `content` as an executable file, unless it is there already.
bool writeProgram(const QString& path, const QByteArray& content) {
  constexpr auto rights = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup |
                          QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
  QFile file(path);
  if (file.open(QIODevice::ReadOnly) && file.readAll() == content) return file.setPermissions(rights);
  file.close();
  file.remove();
  return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() &&
         file.setPermissions(rights);
}

/// The file that the emulator runs for `file`. It insists on the execute bit, and the shell's chmod comes too
/// late and changes only the wrapper: a program without the bit is copied to `copy`.
QString runnable(const QString& file, const QString& copy) {
  if (QFile::permissions(file) & QFile::ExeOwner) return file;
  QFile::remove(copy);
  const bool done =
      QFile::copy(file, copy) && QFile::setPermissions(copy, QFile::ReadOwner | QFile::ExeOwner);
  return done ? copy : QString();
}

bool copyIfOther(const QString& from, const QString& to) {
  const QFileInfo source(from);
  const QFileInfo target(to);
  if (target.exists() && target.size() == source.size() && target.lastModified() >= source.lastModified()) {
    return true;
  }
  QFile::remove(to);
  return QFile::copy(from, to) && QFile::setPermissions(to, QFile::permissions(to) | QFile::ExeOwner |
                                                                QFile::ExeGroup | QFile::ExeOther);
}

void makeLink(const QString& path, const QByteArray& target) {
  if (!QFileInfo(path).isSymLink()) QFile::remove(path);
  // QFile::link would make the target an absolute path of the desktop.
  [[maybe_unused]] const int done = ::symlink(target.constData(), QFile::encodeName(path).constData());
}

QStringList busyboxApplets(const QString& busybox) {
  QProcess process;
  process.start(busybox, {u"--list"_s});
  process.waitForFinished();
  return QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
}

}  // namespace

Sandbox::Sandbox(const QString& stateDir)
    : m_root(stateDir + "/root"_L1), m_run(stateDir + "/run"_L1), m_emulation(stateDir + "/emulation"_L1) {}

QString Sandbox::prepare(const QString& toolPath) {
  m_bwrap = QStandardPaths::findExecutable(u"bwrap"_s);
  if (m_bwrap.isEmpty()) return u"bwrap is not installed (Debian: apt-get install bubblewrap)"_s;
  m_emulators = findEmulators();
  const QString problem = makeTree(toolPath);
  return problem.isEmpty() ? tryOut() : problem;
}

QString Sandbox::makeTree(const QString& toolPath) const {
  for (const char* folder : kFolders) {
    if (!QDir().mkpath(m_root + u'/' + QLatin1StringView(folder))) return u"cannot write to "_s + m_root;
  }
  QDir().mkpath(m_run);
  for (const auto folder : {"/programs"_L1, "/scripts"_L1}) QDir().mkpath(m_emulation + folder);
  for (const Link& link : kLinks) makeLink(m_root + u'/' + QLatin1StringView(link.name), link.target);

  const QString busybox = QStandardPaths::findExecutable(u"busybox"_s);
  if (busybox.isEmpty()) return u"busybox is not installed (Debian: apt-get install busybox-static)"_s;
  const QString bin = m_root + "/system/bin/"_L1;
  if (!copyIfOther(busybox, bin + "busybox"_L1)) return u"cannot copy "_s + busybox;
  if (!copyIfOther(toolPath, bin + "servicecall"_L1)) return u"cannot copy "_s + toolPath;
  if (!QFileInfo(bin + "sh"_L1).isSymLink()) {
    const QStringList applets = busyboxApplets(busybox);
    for (const QString& applet : applets) {
      if (applet != "busybox"_L1) makeLink(bin + applet, "busybox");
    }
  }
  QFile start(m_root + QLatin1StringView(kShellStartFile));
  if (!start.open(QIODevice::WriteOnly)) return u"cannot write to "_s + start.fileName();
  start.write(kShellStart.toByteArray());
  for (const char* command : kServiceCommands) {
    const QString path = bin + QLatin1StringView(command);
    QFile::remove(path);
    makeLink(path, "servicecall");
  }
  return {};
}

QString Sandbox::tryOut() {
  // The shell user of a headset has the id 2000. Where no process namespace can be had (some containers), the
  // shell runs with the desktop's own /proc.
  const QByteArrayList base = {"--unshare-user", "--unshare-ipc", "--unshare-net", "--uid",
                               "2000",           "--gid",         "2000"};
  QString said;
  for (const QByteArrayList& proc :
       {QByteArrayList{"--unshare-pid", "--proc", "/proc"}, QByteArrayList{"--ro-bind", "/proc", "/proc"}}) {
    m_isolation = base + proc;
    const QByteArrayList line = command("true");
    QStringList arguments;
    for (const QByteArray& argument : line.mid(1)) arguments.append(QFile::decodeName(argument));
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(m_bwrap, arguments);
    process.waitForFinished();
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0) return {};
    said = QString::fromLocal8Bit(process.readAll()).trimmed();
  }
  return u"the shell's sandbox cannot be made here (bwrap said: %1); user namespaces must be allowed"_s.arg(
      said);
}

QByteArrayList Sandbox::emulation() const {
  QByteArrayList line;
  if (m_emulators.isEmpty()) return line;
  const QByteArray place = kEmulatorFolder.toByteArray();
  QDirIterator files(m_root + QLatin1StringView(kProgramFolder),
                     QDir::Files | QDir::Hidden | QDir::NoSymLinks);
  for (int count = 0; count < kMostFilesLookedAt && files.hasNext(); ++count) {
    const QString file = files.next();
    const int machine = readElf(file).machine;
    const auto emulator = m_emulators.constFind(machine);
    if (emulator == m_emulators.constEnd()) continue;
    const QByteArray name = QFile::encodeName(files.fileName());
    const QByteArray emulatorInside = place + QByteArray::number(machine);
    const QByteArray programInside = place + "programs/" + name;
    const QString wrapper = m_emulation + "/scripts/"_L1 + files.fileName();
    const QString program = runnable(file, m_emulation + "/programs/"_L1 + files.fileName());
    if (program.isEmpty() ||
        !writeProgram(wrapper, "#!/system/bin/sh\nexec " + emulatorInside + " -0 \"$0\" " +
                                   shellWord(programInside) + " \"$@\"\n")) {
      continue;
    }
    // The wrapper is writable, for a chmod. Binding one twice does no harm.
    line << "--ro-bind" << QFile::encodeName(*emulator) << emulatorInside;
    line << "--ro-bind" << QFile::encodeName(program) << programInside;
    line << "--bind" << QFile::encodeName(wrapper) << kProgramFolder + ('/' + name);
  }
  return line;
}

QByteArrayList Sandbox::command(const QByteArray& script, const QByteArray& terminal) const {
  const QByteArray root = QFile::encodeName(m_root);
  QByteArrayList line = {QFile::encodeName(m_bwrap), "--die-with-parent", "--ro-bind", root, "/"};
  for (const char* writable : {kProgramFolder, "/storage/emulated/0"}) {
    line << "--bind" << root + writable << writable;
  }
  line << "--dev"
       << "/dev"
       << "--ro-bind" << QFile::encodeName(m_run) << "/dev/socket";
  line << emulation() << m_isolation << "--chdir"
       << "/"
       << "--clearenv";
  const std::pair<const char*, QByteArray> environment[] = {
      {"PATH", "/system/bin"},
      {"EXTERNAL_STORAGE", "/sdcard"},
      {"ANDROID_ROOT", "/system"},
      {"ANDROID_DATA", "/data"},
      {"ANDROID_STORAGE", "/storage"},
      {"HOME", "/"},
      {"USER", "shell"},
      {"SHELL", "/system/bin/sh"},
      {"TMPDIR", "/data/local/tmp"},
      {"HOSTNAME", "hollywood"},
      {"TERM", terminal},
      {"LANG", "C.UTF-8"},
      {"ENV", kShellStartFile.toByteArray()},
  };
  for (const auto& [name, value] : environment) line << "--setenv" << name << value;
  line << "/system/bin/sh";
  if (script.isEmpty()) return line << "-i";
  return line << "-c"
              << ". " + kShellStartFile.toByteArray() + '\n' + script;
}

}  // namespace orvanta::headset
