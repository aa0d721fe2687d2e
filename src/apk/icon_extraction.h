#pragma once

#include <QCoroTask>

namespace orvanta {

class PictureBox;
struct LoadedPackage;

/// Takes the icon out of the loaded package and shows it in `picture`; the box stays empty if there is no
/// icon.
///
/// While the icon is read the package has a name that ends in "zip". Afterwards it gets its exact old name
/// back; if that fails, `RenameBackDue` makes the device watcher try again. A package that could not be
/// renamed is not read, and an existing file of the other name is left alone.
QCoro::Task<> showIcon(LoadedPackage& package, PictureBox* picture);

}  // namespace orvanta
