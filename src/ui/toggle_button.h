#pragma once

#include <QAbstractButton>
#include <QColor>

#include "text/text.h"

namespace orvanta {

/// A check box that looks like a button: one plain face while raised (value 0), another while pressed (value
/// 1).
class ToggleButton : public QAbstractButton {
  Q_OBJECT

 public:
  ToggleButton(const QString& designName, const Text& caption, QColor raisedFace, QColor pressedFace,
               QWidget* parent);

  void setCaption(const Text& caption);

  int Value() const { return isChecked() ? 1 : 0; }
  void setValue(int value) { setChecked(value == 1); }

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Text m_caption;
  QColor m_raisedFace;
  QColor m_pressedFace;
};

}  // namespace orvanta
