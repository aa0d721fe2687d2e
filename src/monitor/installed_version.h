#pragma once

#include <QCoroTask>

namespace orvanta {

class DOSOutputs;
class apkinfo;

/// Asks the device for the loaded package's build at start-up, paints `Label6` and replaces the console's
/// text by the verdict. Returns whether the expansion files are to be listed behind it.
QCoro::Task<bool> showInstalledBuildAtStart(apkinfo& form);

/// Asks again through `runner` and repaints `Label6`; nothing is said in the console. Returns whether the
/// package counts as installed. What a turn of another handler has overtaken is dropped: the last answer
/// stands.
QCoro::Task<bool> CompareInstalledVersion(apkinfo& form, DOSOutputs& runner);

}  // namespace orvanta
