#pragma once

#include <QCoroTask>

namespace orvanta {

class DOSOutputs;
class Workbench;

/// Asks the device for the loaded package's build at start-up, paints `Label6` and replaces the console's
/// text with the verdict. Returns whether to list the expansion files after it.
QCoro::Task<bool> showInstalledBuildAtStart(Workbench& bench);

/// Asks again through `runner` and repaints `Label6`; writes nothing to the console. Returns whether the
/// package counts as installed. An answer that another handler's turn has overtaken is dropped: the last one
/// stays.
QCoro::Task<bool> CompareInstalledVersion(Workbench& bench, DOSOutputs& runner);

}  // namespace orvanta
