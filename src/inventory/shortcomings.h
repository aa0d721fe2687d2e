#pragma once

#include <QList>
#include <QString>

namespace orvanta {

/// How an inventory went, as far as it matters for what the window says.
struct InventoryOutcome {
  bool stopped = false;        ///< the user stopped it
  QString scriptFailure;       ///< why the script could not be written, else empty
  bool hasBadgingTool = true;  ///< the tool that reads the labels is beside the executable
  QString AppCountText;        ///< the count as the device printed it
  qsizetype apps = 0;          ///< apps read
  bool anyLabel = false;       ///< at least one has a label
  bool anySize = false;        ///< at least one has a size, even 0.0
  bool anySpace = false;       ///< at least one has a size above that
  QList<QString> words;        ///< lines of the script's output without a tag
  bool cut = false;            ///< the output ends in the middle
};

/// What is missing from an incomplete inventory, for the user: one sentence, with the tool's own words if
/// any. Empty when all is well.
QString shortcomingsOf(const InventoryOutcome& outcome);

}  // namespace orvanta
