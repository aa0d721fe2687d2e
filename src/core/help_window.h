#pragma once

#include "ui/form.h"

namespace orvanta {

/// The help picture. A click anywhere on it, Enter, the space bar or Escape hides it.
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
