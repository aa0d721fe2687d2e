#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QWidget>

#include "ui/controls.h"
#include "ui/transfer_pace.h"

namespace orvanta {

/// A slim strip that says which tool is running, for how long, and offers to stop it.
///
/// It appears when something has run for half a second, so that short runs do not flicker, or at once if a
/// click is refused meanwhile.
class BusyStrip : public QWidget {
  Q_OBJECT

 public:
  explicit BusyStrip(QWidget* parent);

  /// A run named `name` has begun; the strip shows `name` until the next call.
  void begin(const QString& name);
  /// The run has ended; another one may follow at once.
  void pause();
  /// Nothing runs any more.
  void end();
  /// Asks the user, for two seconds, to wait for the end of the run.
  void askToWait();
  /// How far a transfer is: bytes done, bytes in all. It goes on over several runs; 0 in all ends it.
  void setProgress(qint64 doneBytes, qint64 allBytes);

  bool inView() const { return m_inView; }

 Q_SIGNALS:
  void stopRequested();
  /// The strip appeared or disappeared; its owner makes the room.
  void inViewChanged();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void refresh();
  QString caption() const;
  void settleView();
  void layOut();

  QString m_name;
  qint64 m_doneBytes = 0;
  qint64 m_allBytes = 0;
  TransferPace m_pace;
  QElapsedTimer m_since;
  QTimer m_patience;
  QTimer m_linger;
  QTimer m_second;
  QTimer m_wait;
  Label* m_text;
  QProgressBar* m_bar;
  Button* m_stop;
  bool m_busy = false;
  bool m_inView = false;
};

}  // namespace orvanta
