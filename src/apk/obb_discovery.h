#pragma once

#include <QStringList>

namespace orvanta {

class Workbench;

/// Whether a file's name ends in the letters "obb", in any case; no dot is needed.
bool endsInObb(const QString& name);

/// Tells in the console which expansion files lie beside the loaded package: in the folder named after it if
/// there is one (this also beeps and enables the uninstall buttons), else beside the package file.
void FindObbFiles(Workbench& bench);

}  // namespace orvanta
