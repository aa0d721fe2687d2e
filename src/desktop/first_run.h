#pragma once

#include <QCoroTask>

namespace orvanta {

class apkinfo;
class FileManagerEntry;

/// The first-run dialog: offers to make the file manager's entry and keeps in `Explentry` whether it stands.
/// Every way through it ends the process; a No leaves everything as it was, so that it comes again.
QCoro::Task<> FirstRun(apkinfo& form, FileManagerEntry& entry);

}  // namespace orvanta
