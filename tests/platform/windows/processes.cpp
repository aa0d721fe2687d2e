#include <windows.h>

#include "platform/run.h"

namespace orvanta {

bool runs(const QByteArray& number) {
  const HANDLE process = ::OpenProcess(SYNCHRONIZE, FALSE, number.trimmed().toUInt());
  const bool running = process && ::WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
  if (process) ::CloseHandle(process);
  return running;
}

qsizetype openHandles() {
  // Handle values start low. There is a call that counts them, but Wine answers 0.
  qsizetype count = 0;
  DWORD flags = 0;
  for (quintptr value = 4; value < 0x1000; value += 4) {
    if (::GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags)) ++count;
  }
  return count;
}

}  // namespace orvanta
