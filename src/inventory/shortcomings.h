#pragma once

#include <QList>
#include <QString>

namespace orvanta {

/// How an inventory went, as far as it bears on what the window shows.
struct InventoryOutcome {
  bool stopped = false;        ///< the user stopped it
  QString scriptFailure;       ///< why the script could not be written; empty when it could
  bool hasBadgingTool = true;  ///< the tool that tells the labels lies beside the executable
  QString AppCountText;        ///< the count as the device printed it
  qsizetype apps = 0;          ///< apps read
  bool anyLabel = false;       ///< one of them at least has a label
  bool anySize = false;        ///< one of them at least has a size
  QList<QString> words;        ///< lines of the script's output without a tag
  bool cut = false;            ///< the output ends in the middle
};

/// What the user should know of an inventory that is not whole: one sentence, with the tool's own words where
/// there are any. Empty when all is well.
QString shortcomingsOf(const InventoryOutcome& outcome);

}  // namespace orvanta
