#pragma once

#include <QTimer>

#include "ui/busy_strip.h"
#include "ui/controls.h"
#include "ui/form.h"

namespace orvanta {

/// One centred line in the largest size that fits, up to 24 point. A tool's error text can stand in it.
class ProgressLabel : public Label {
  Q_OBJECT

 public:
  using Label::Label;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// How far the inventory is: a caption before a bar that grows. The user cannot close it, only stop the run;
/// trying to close it stops the run too.
class Form5 : public Form {
  Q_OBJECT

 public:
  Form5();

  QTimer* Timer1;         ///< starts the load of the grid's window, once
  ProgressLabel* Label1;  ///< progress text
  BusyStrip* busyStrip;   ///< elapsed time, with Stop

  /// Widens the bar to `twips`; it never shrinks.
  void drawBar(int twips);
  /// The bar's width.
  int barTwips() const { return m_barTwips; }

 Q_SIGNALS:
  void stopRequested();

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  int m_barTwips = 0;
};

}  // namespace orvanta
