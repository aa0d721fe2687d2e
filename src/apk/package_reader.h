#pragma once

#include <QCoroTask>

namespace orvanta {

class apkinfo;

/// Runs `aapt` on the loaded package and keeps what it says in the main window's state.
QCoro::Task<> readPackage(apkinfo& form);

}  // namespace orvanta
