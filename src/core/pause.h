#pragma once

#include <QCoroTask>

namespace orvanta {

/// Waits `seconds` while the program stays responsive.
QCoro::Task<> Pause(double seconds);

}  // namespace orvanta
