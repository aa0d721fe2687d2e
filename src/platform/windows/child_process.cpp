#include "platform/child_process.h"

#include <windows.h>

#include <QMutex>
#include <QSemaphore>
#include <array>
#include <cstddef>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/output_blocks.h"

namespace orvanta {

namespace {

constexpr qsizetype kReadSize = 64 * 1024;
// Reads that may be queued before the reader, and so the tool, has to wait for the event loop.
constexpr int kReadsAhead = 4;

class Handle {
 public:
  explicit Handle(HANDLE handle = nullptr) : m_handle(handle) {}
  Handle(Handle&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(m_handle, other.m_handle);
    return *this;
  }
  ~Handle() {
    if (m_handle) ::CloseHandle(m_handle);
  }

  bool isOpen() const { return m_handle != nullptr; }
  HANDLE get() const { return m_handle; }

 private:
  HANDLE m_handle;
};

/// The start-up data of a hidden child that inherits one handle, its output, and nothing else that happens to
/// be inheritable in this program.
class StartupInfo {
 public:
  explicit StartupInfo(HANDLE output) : m_output(output) {
    m_info.StartupInfo.cb = sizeof(m_info);
    m_info.StartupInfo.dwFlags = STARTF_USESTDHANDLES | STARTF_USESHOWWINDOW;
    m_info.StartupInfo.wShowWindow = SW_HIDE;
    m_info.StartupInfo.hStdOutput = output;
    m_info.StartupInfo.hStdError = output;
    auto* const list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_list.data());
    SIZE_T size = m_list.size();
    if (!::InitializeProcThreadAttributeList(list, 1, 0, &size)) return;
    m_info.lpAttributeList = list;
    m_complete = ::UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, &m_output,
                                             sizeof(m_output), nullptr, nullptr) != 0;
  }
  ~StartupInfo() {
    if (m_info.lpAttributeList) ::DeleteProcThreadAttributeList(m_info.lpAttributeList);
  }
  Q_DISABLE_COPY_MOVE(StartupInfo)

  /// False with the reason in GetLastError() when the list could not be made.
  bool isComplete() const { return m_complete; }
  STARTUPINFOA* get() { return &m_info.StartupInfo; }

 private:
  HANDLE m_output;  // the attribute list keeps a pointer to it
  // A list of one attribute takes 48 bytes; a size that is too small is reported and not written past.
  alignas(std::max_align_t) std::array<std::byte, 128> m_list = {};
  STARTUPINFOEXA m_info = {};
  bool m_complete = false;
};

class WindowsChildProcess;

/// What the object and its reader thread share. It outlives both, since no safe call ends a blocked read
/// before the last holder of the pipe has closed it.
class Reader {
 public:
  Reader(Handle pipe, WindowsChildProcess* receiver) : m_pipe(std::move(pipe)), m_receiver(receiver) {}

  /// The thread: reads until the pipe ends or nobody listens any more.
  void run();
  /// The event loop has dealt with so many reads.
  void makeRoom(int reads) { m_room.release(reads); }
  /// Nothing reaches the receiver after this.
  void abandon();

 private:
  template <typename Call>
  bool post(Call call);

  Handle m_pipe;
  QSemaphore m_room{kReadsAhead};
  QMutex m_mutex;
  WindowsChildProcess* m_receiver;
};

class WindowsChildProcess final : public OutputBlocks {
 public:
  ~WindowsChildProcess() override {
    if (!m_reader) return;
    terminate();
    WindowsChildProcess::release();
  }

  std::optional<StartFailure> start(const QString& commandLine) override;
  void kill() override;
  std::optional<qint64> bytesRead() const override;

  /// Called on the event loop for the reader.
  void takeRead(const QByteArray& bytes);
  void takeEnd() { endOfPipe(); }

 protected:
  void release() override;

 private:
  void terminate();
  /// Whether what the job holds ends when the last handle to the job goes.
  void setEndsWithJob(bool ends);

  std::shared_ptr<Reader> m_reader;  // null when no run is on
  // Holds the tool and whatever it starts, so that kill() ends all of it, and no tool outlives this program
  // and writes where the next start sets things right. A run that ends by itself leaves a daemon it started,
  // such as adb's server, alone. A kill() during the run that started the daemon ends it too: breakaway
  // cannot be granted to the daemon alone, and a script's tools would then survive the script. The next call
  // starts the daemon again.
  Handle m_job;
  Handle m_process;
  int m_readsTaken = 0;
  bool m_used = false;
  bool m_killed = false;
};

void Reader::run() {
  for (;;) {
    QByteArray bytes(kReadSize, Qt::Uninitialized);
    DWORD count = 0;
    const BOOL more =
        ::ReadFile(m_pipe.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr);
    if (!more) break;
    if (count == 0) continue;  // the tool wrote nothing; that is not the end
    // A short line in the queue must not keep a whole buffer.
    bytes = bytes.first(static_cast<qsizetype>(count));
    m_room.acquire();
    if (!post([bytes](WindowsChildProcess* receiver) { receiver->takeRead(bytes); })) return;
  }
  post([](WindowsChildProcess* receiver) { receiver->takeEnd(); });
}

template <typename Call>
bool Reader::post(Call call) {
  const QMutexLocker locker(&m_mutex);
  if (!m_receiver) return false;
  // Queued calls die with their receiver.
  QMetaObject::invokeMethod(
      m_receiver, [receiver = m_receiver, call] { call(receiver); }, Qt::QueuedConnection);
  return true;
}

void Reader::abandon() {
  const QMutexLocker locker(&m_mutex);
  m_receiver = nullptr;
  m_room.release();
}

std::optional<ChildProcess::StartFailure> WindowsChildProcess::start(const QString& commandLine) {
  const auto failure = [](StartFailure::Step step, DWORD error) { return StartFailure{step, error}; };
  if (std::exchange(m_used, true)) return failure(StartFailure::Step::Process, ERROR_ALREADY_INITIALIZED);
  // The operating system would cut the line at the NUL and run another command.
  if (commandLine.contains(QChar::Null)) return failure(StartFailure::Step::Process, ERROR_INVALID_PARAMETER);

  SECURITY_ATTRIBUTES security = {sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
  HANDLE readEnd = nullptr;
  HANDLE writeEnd = nullptr;
  if (!::CreatePipe(&readEnd, &writeEnd, &security, 0)) {
    return failure(StartFailure::Step::Pipe, ::GetLastError());
  }
  Handle input(readEnd);
  Handle output(writeEnd);
  if (!::SetHandleInformation(output.get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT)) {
    return failure(StartFailure::Step::Pipe, ::GetLastError());
  }
  StartupInfo startup(output.get());
  if (!startup.isComplete()) return failure(StartFailure::Step::Process, ::GetLastError());

  QByteArray line = commandLine.toLocal8Bit();
  PROCESS_INFORMATION information = {};
  // Suspended, so that nothing can be started before the job holds the tool.
  if (!::CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE,
                        NORMAL_PRIORITY_CLASS | EXTENDED_STARTUPINFO_PRESENT | CREATE_SUSPENDED, nullptr,
                        nullptr, startup.get(), &information)) {
    return failure(StartFailure::Step::Process, ::GetLastError());
  }
  const Handle thread(information.hThread);
  m_process = Handle(information.hProcess);
  m_job = Handle(::CreateJobObjectA(nullptr, nullptr));
  // Without a job, kill() ends the tool alone.
  if (m_job.isOpen() && !::AssignProcessToJobObject(m_job.get(), m_process.get())) m_job = Handle();
  setEndsWithJob(true);

  m_reader = std::make_shared<Reader>(std::move(input), this);
  try {
    std::thread([reader = m_reader] { reader->run(); }).detach();
  } catch (const std::system_error&) {
    terminate();
    release();
    return failure(StartFailure::Step::Process, ERROR_NO_SYSTEM_RESOURCES);
  }
  ::ResumeThread(thread.get());
  return std::nullopt;
}

void WindowsChildProcess::takeRead(const QByteArray& bytes) {
  if (!m_reader) return;
  ++m_readsTaken;
  if (receive(bytes)) m_reader->makeRoom(std::exchange(m_readsTaken, 0));
}

void WindowsChildProcess::kill() {
  if (!m_reader || std::exchange(m_killed, true)) return;
  terminate();
  endSoon();
}

std::optional<qint64> WindowsChildProcess::bytesRead() const {
  IO_COUNTERS counters = {};
  if (!m_process.isOpen() || !::GetProcessIoCounters(m_process.get(), &counters)) return std::nullopt;
  return static_cast<qint64>(counters.ReadTransferCount);
}

void WindowsChildProcess::terminate() {
  if (m_job.isOpen()) {
    ::TerminateJobObject(m_job.get(), 1);
  } else {
    ::TerminateProcess(m_process.get(), 1);
  }
}

void WindowsChildProcess::release() {
  std::exchange(m_reader, nullptr)->abandon();
  m_process = Handle();
  setEndsWithJob(false);
  m_job = Handle();
}

void WindowsChildProcess::setEndsWithJob(bool ends) {
  if (!m_job.isOpen()) return;
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
  limits.BasicLimitInformation.LimitFlags = ends ? JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE : 0;
  ::SetInformationJobObject(m_job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
}

}  // namespace

std::unique_ptr<ChildProcess> ChildProcess::create() {
  return std::make_unique<WindowsChildProcess>();
}

}  // namespace orvanta
