#pragma once

#include <QToolButton>

#include "text/face.h"

namespace orvanta {

/// The small button that gives all texts another face: it shows the present one, its menu has all three.
class FaceSwitch : public QToolButton {
  Q_OBJECT

 public:
  explicit FaceSwitch(QWidget* parent);

  /// What a face is called, in its own words, whatever face texts have now.
  static QString nameOf(Face face);

 Q_SIGNALS:
  void chosen(orvanta::Face face);
};

}  // namespace orvanta
