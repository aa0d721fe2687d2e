#pragma once

#include <QList>
#include <QString>
#include <array>

#include "inventory/columns.h"

namespace orvanta {

/// One app as the script printed it: the texts of its cells, as parts of the output, with the line ends and
/// the blank after the package.
using InventoryApp = std::array<QStringView, inventoryColumns>;

struct Inventory {
  QList<InventoryApp> apps;
  /// The lines without a tag, without line ends: other output of the tools.
  QList<QString> words;
  /// The output is cut off: it ends within the last app, or with an error of adb.
  bool cut = false;
};

/// Reads the output of the inventory script. A tag counts only at the start of a line and with exact case;
/// tagged lines before the first app are dropped. The apps refer to the output and must not outlive it.
Inventory readInventory(QStringView scriptOutput);

}  // namespace orvanta
