#pragma once

#include <QStringList>

namespace orvanta {

/// Sets right what a run of the program left when it died, from the journal. Returns the lines for the user.
/// If `commandText` is a package's temporary name, it becomes the package's own name once that is restored.
QStringList settleWhatIsLeft(QString& commandText);

}  // namespace orvanta
