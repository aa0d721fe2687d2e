#pragma once

#include <QTableWidget>

#include "ui/controls.h"
#include "ui/form.h"

namespace orvanta {

/// The help picture, and behind it a page that tells each control's name in every face and what it does. A
/// click anywhere on the picture, Enter, the space bar or Escape hides the window.
class Form2 : public Form {
  Q_OBJECT

 public:
  explicit Form2(QWidget* owner);

  Button* turn;         ///< turns from the picture to the names and back
  QTableWidget* names;  ///< a control a row

 protected:
  void showEvent(QShowEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void showNames(bool shown);
  void readNames();
};

}  // namespace orvanta
