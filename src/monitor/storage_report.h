#pragma once

#include <QCoroTask>

namespace orvanta {

class DOSOutputs;
class Workbench;

/// Asks the device for its shared storage through `runner` and shows size, used, free and percentage. An
/// answer that a turn of another handler has overtaken is dropped.
QCoro::Task<> StorageReport(Workbench& bench, DOSOutputs& runner);

}  // namespace orvanta
