#pragma once

#include <QStringList>

namespace orvanta {

class apkinfo;

/// Whether a file's name ends in the letters "obb", in any case; no dot is asked for.
bool endsInObb(const QString& name);

/// Tells in the console which expansion files lie beside the loaded package: in the folder named after it
/// where there is one (which also sounds the beep and enables the main buttons), else beside the package
/// file.
void FindObbFiles(apkinfo& form);

}  // namespace orvanta
