#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QWidget>

#include "ui/controls.h"

namespace orvanta {

/// A slim strip that says which tool is running, for how long, and offers to stop it.
///
/// It comes into view when something has run for half a second, so that short runs do not make the window
/// flicker.
class BusyStrip : public QWidget {
  Q_OBJECT

 public:
  explicit BusyStrip(QWidget* parent);

  /// A run named `name` has begun; `name` stands in the strip until the next call.
  void begin(const QString& name);
  /// The run has ended, and another one may follow at once.
  void pause();
  /// Nothing runs any more.
  void end();
  /// How far the run is, where the amount is known beforehand: bytes done of bytes in all. -1 in all: not
  /// known.
  void setProgress(qint64 doneBytes, qint64 allBytes);

  bool inView() const { return m_inView; }

 Q_SIGNALS:
  void stopRequested();
  /// The strip came into view or went from it; its owner makes the room.
  void inViewChanged();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void refresh();
  void setInView(bool inView);

  QString m_name;
  qint64 m_doneBytes = 0;
  qint64 m_allBytes = -1;
  QElapsedTimer m_since;
  QTimer m_patience;
  QTimer m_linger;
  QTimer m_second;
  Label* m_text;
  QProgressBar* m_bar;
  Button* m_stop;
  bool m_inView = false;
};

}  // namespace orvanta
