#pragma once

#include <QList>
#include <QString>
#include <array>

namespace orvanta {

/// One app as the script printed it: the texts of the columns up to `ColDataSpace`, as parts of the output.
/// Line ends and the blank behind the package belong to them.
using InventoryApp = std::array<QStringView, 8>;

struct Inventory {
  QList<InventoryApp> apps;
  /// The lines without a tag, less their line ends: what the tools had to say besides.
  QList<QString> words;
  /// The output ends in the middle: within the last app, or with an error of adb behind it.
  bool cut = false;
};

/// Reads the output of the inventory script. A tag counts only at the start of a line and in its own case;
/// tagged lines before the first app belong to none and are dropped. The apps are good as long as the output
/// is.
Inventory readInventory(QStringView scriptOutput);

}  // namespace orvanta
