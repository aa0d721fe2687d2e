#include "platform/processes.h"

// The order matters: the second header needs the first.
#include <windows.h>
// clang-format off
#include <tlhelp32.h>
// clang-format on

namespace orvanta {

// The runner's jobs let nobody go.
const bool childrenCanLeave = false;
const StartErrors startErrors = {ERROR_FILE_NOT_FOUND, ERROR_BAD_EXE_FORMAT, ERROR_INVALID_PARAMETER};

bool runs(const QByteArray& process) {
  const HANDLE handle = ::OpenProcess(SYNCHRONIZE, FALSE, process.trimmed().toUInt());
  const bool running = handle && ::WaitForSingleObject(handle, 0) == WAIT_TIMEOUT;
  if (handle) ::CloseHandle(handle);
  return running;
}

void end(const QByteArray& process) {
  const HANDLE handle = ::OpenProcess(PROCESS_TERMINATE, FALSE, process.trimmed().toUInt());
  if (!handle) return;
  ::TerminateProcess(handle, 1);
  ::CloseHandle(handle);
}

bool noChildren() {
  const HANDLE snapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32W entry = {};
  entry.dwSize = sizeof(entry);
  bool none = true;
  for (BOOL more = ::Process32FirstW(snapshot, &entry); more; more = ::Process32NextW(snapshot, &entry)) {
    // Wine starts programs of its own in our name.
    if (entry.th32ParentProcessID == ::GetCurrentProcessId() &&
        wcscmp(entry.szExeFile, L"test-child.exe") == 0) {
      none = false;
    }
  }
  ::CloseHandle(snapshot);
  return none;
}

qsizetype openHandles() {
  // Values are given out from the lowest on. There is a call for this, which Wine answers with 0.
  qsizetype count = 0;
  DWORD flags = 0;
  for (quintptr value = 4; value < 0x1000; value += 4) {
    if (::GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags)) ++count;
  }
  return count;
}

}  // namespace orvanta
