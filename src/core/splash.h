#pragma once

#include <functional>

#include "ui/busy_strip.h"
#include "ui/form.h"

namespace orvanta {

/// The splash, which stands while the package is read. A tool that takes long shows on it, and can be stopped
/// there.
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

/// The help picture. A click anywhere on it, Enter or Escape hides it.
class Form2 : public Form {
  Q_OBJECT

 public:
  explicit Form2(QWidget* owner);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace orvanta
