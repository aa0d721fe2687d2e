#pragma once

#include <functional>

#include "ui/busy_strip.h"
#include "ui/form.h"

namespace orvanta {

/// The splash, shown while the package is read. It shows a tool that takes long, with a Stop button.
class Form9 : public Form {
  Q_OBJECT

 public:
  Form9();

  /// The program's first step. With a `commandText` the splash appears and `showMainWindow` follows from its
  /// first timer tick; without one it follows at once.
  void Form_Load(const QString& commandText, std::function<void()> showMainWindow);

  BusyStrip* busyStrip;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  QTimer m_Timer1;
};

}  // namespace orvanta
