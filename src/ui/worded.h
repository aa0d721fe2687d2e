#pragma once

#include <functional>

class QWidget;

namespace orvanta {

/// Calls `read`, which gives texts to `widget` or to what belongs to it: now, and again whenever texts get
/// another face.
void worded(QWidget* widget, std::function<void()> read);

}  // namespace orvanta
