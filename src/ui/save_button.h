#pragma once

#include "ui/controls.h"

namespace orvanta {

/// A small button with the sign for saving in the place of a caption.
class SaveButton : public Button {
  Q_OBJECT

 public:
  /// `name` is what screen readers and the tool-tip say.
  SaveButton(const QString& designName, const Text& name, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace orvanta
