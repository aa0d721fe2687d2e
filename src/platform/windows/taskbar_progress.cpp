#include "platform/taskbar_progress.h"

#include <windows.h>

#include <shobjidl.h>

#include <QWindow>

namespace orvanta {

void showTaskbarProgress(const QWindow* window, int percent) {
  if (window == nullptr) return;
  // Qt has set up COM for this thread.
  static ITaskbarList3* const taskbar = [] {
    ITaskbarList3* list = nullptr;
    const HRESULT made = ::CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER,
                                            IID_ITaskbarList3, reinterpret_cast<void**>(&list));
    if (SUCCEEDED(made) && FAILED(list->HrInit())) {
      list->Release();
      list = nullptr;
    }
    return SUCCEEDED(made) ? list : nullptr;
  }();
  if (taskbar == nullptr) return;
  auto* const handle = reinterpret_cast<HWND>(window->winId());
  if (percent < 0) {
    taskbar->SetProgressState(handle, TBPF_NOPROGRESS);
  } else {
    taskbar->SetProgressValue(handle, static_cast<ULONGLONG>(percent), 100);
  }
}

}  // namespace orvanta
