#pragma once

namespace orvanta {

/// The columns of the inventory. A row of the grid is one app; row 0 is the header.
enum InventoryColumn {
  ColAppName = 0,    ///< label, then CR
  ColPackage = 1,    ///< package name, then a blank and CR
  ColVersion = 2,    ///< version name, then CR
  ColBuild = 3,      ///< version code, bare digits
  ColUsedSpace = 4,  ///< size of all, one decimal, then CR
  ColApkSpace = 5,   ///< size of the package file, the same
  ColObbSpace = 6,   ///< size of the expansion files, the same
  ColDataSpace = 7,  ///< size of the data on the shared storage, the same
  ColOrder = 8,      ///< row number in the order of the labels
  ColMenuIcon = 9,   ///< no text; the cog that opens the menu
  inventoryColumns = 10,
};

}  // namespace orvanta
