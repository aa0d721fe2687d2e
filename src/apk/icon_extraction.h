#pragma once

#include <QCoroTask>

namespace orvanta {

class apkinfo;

/// Takes the icon out of the loaded package and shows it in `Picture1`; the box stays empty where there is
/// none.
///
/// While it is read the package bears a name that ends in "zip". Afterwards it gets back the very name that
/// it had; where that cannot be done, `RenameBackDue` arms the device watcher to try again. A package that
/// could not be renamed is not read, and a file that has the other name already keeps its own.
QCoro::Task<> showIcon(apkinfo& form);

}  // namespace orvanta
