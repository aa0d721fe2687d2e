#pragma once

#include <QCoroTask>
#include <QList>
#include <QString>
#include <functional>

#include "core/state.h"
#include "text/bilingual.h"

namespace orvanta {

class Workbench;

/// What is about to be put on the headset.
struct SendPlan {
  QString name;        ///< of the package file, for the user
  QString build;       ///< of the package
  QString newerBuild;  ///< the build on the headset, if that is known to be newer
  qint64 packageBytes = 0;
  qsizetype files = 0;  ///< expansion files
  qint64 fileBytes = 0;
};

/// What speaks against it, in the order of the user's interest; usually nothing. Goes by what is known of the
/// headset and asks it nothing.
QList<Bilingual> objectionsTo(const SendPlan& plan, const Headset& known);

/// Tells the user what speaks against `plan`, and asks whether to go on. True without a question if nothing
/// does. While several devices are connected and none is chosen, adb would refuse: the answer is false, and
/// Yes calls `chooseDevice`. While the question is open, the watcher's hold is on, so that nothing changes.
QCoro::Task<bool> mayBegin(Workbench& bench, SendPlan plan, std::function<void()> chooseDevice);

}  // namespace orvanta
