#include "platform/notification.h"

#include <windows.h>

#include <shellapi.h>

#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <iterator>

namespace orvanta {

namespace {

constexpr std::chrono::seconds kShown{10};

/// A notification belongs to an icon beside the clock, and goes with it.
class Notification final : public QObject {
 public:
  Notification(const QString& title, const QString& text) : QObject(QCoreApplication::instance()) {
    // The icon needs a window to belong to; nobody sees this one, and it gets no messages.
    m_data.cbSize = sizeof(m_data);
    m_data.hWnd =
        ::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    m_data.uFlags = NIF_ICON | NIF_TIP | NIF_INFO;
    m_data.hIcon = ::LoadIconW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1));
    m_data.dwInfoFlags = NIIF_INFO | NIIF_RESPECT_QUIET_TIME;
    copy(QCoreApplication::applicationName(), m_data.szTip);
    copy(title, m_data.szInfoTitle);
    copy(text, m_data.szInfo);
    ::Shell_NotifyIconW(NIM_ADD, &m_data);
    QTimer::singleShot(kShown, this, &QObject::deleteLater);
  }
  ~Notification() override {
    ::Shell_NotifyIconW(NIM_DELETE, &m_data);
    ::DestroyWindow(m_data.hWnd);
  }
  Q_DISABLE_COPY_MOVE(Notification)

 private:
  /// As much of `text` as there is room for, with the NUL at its end.
  template <size_t room>
  static void copy(const QString& text, wchar_t (&place)[room]) {
    const std::wstring part = text.left(room - 1).toStdWString();
    std::copy(part.begin(), part.end(), std::begin(place));
  }

  NOTIFYICONDATAW m_data = {};
};

}  // namespace

void notifyUser(const QString& title, const QString& text) {
  new Notification(title, text);
}

}  // namespace orvanta
