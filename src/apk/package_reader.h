#pragma once

#include <QCoroTask>

namespace orvanta {

class Workbench;

/// Runs `aapt` on the loaded package and stores the result in the state. The console reports a file that is
/// not a package.
QCoro::Task<> readPackage(Workbench& bench);

}  // namespace orvanta
