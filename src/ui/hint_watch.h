#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace orvanta {

/// Tells which control the user wonders about: the pointer rests on it, or the keyboard came to it. A few
/// seconds later, or when he goes on, that ends.
class HintWatch : public QObject {
 public:
  /// `show` gets the control, and null when it ends.
  HintWatch(QWidget* window, std::function<void(const QWidget*)> show);

  /// From now on `control` is watched.
  void add(QWidget* control);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void begin(QWidget* control);
  void end();

  std::function<void(const QWidget*)> m_show;
  QPointer<QWidget> m_under;
  QTimer m_rest;
  QTimer m_enough;
  bool m_shown = false;
};

}  // namespace orvanta
