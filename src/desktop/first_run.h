#pragma once

#include <QCoroTask>
#include <functional>

#include "core/settings_store.h"
#include "ui/desktop.h"

namespace orvanta {

class FileManagerEntry;

/// What the first-run dialog works with.
struct FirstRunNeeds {
  Desktop& desktop;
  SettingsStore& settings;
  std::function<void()> QuitProgram;  ///< ends the process at once
};

/// The first-run dialog: offers to make the file manager's entry and records in `Explentry` whether it was
/// made. Every way through it ends the process; No changes nothing, so the dialog comes back.
QCoro::Task<> FirstRun(FirstRunNeeds needs, FileManagerEntry& entry);

}  // namespace orvanta
