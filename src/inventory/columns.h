#pragma once

#include <algorithm>
#include <iterator>
#include <limits>

#include "inventory/cell_text.h"
#include "text/text.h"

namespace orvanta {

/// The columns that code names, by their row in the table below.
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
};

/// How wide a column is: as its texts, within these bounds.
struct WidthRule {
  int leastTwips = 0;
  int mostTwips = std::numeric_limits<int>::max();
  /// In which turn the column gives way when not all fit; 0 for never.
  int givesWay = 0;
};

/// A column of the installed apps. One with a tag is read from the script's output.
struct Column {
  Designed heading;
  CellKind kind;  ///< also what it is sorted by
  Qt::AlignmentFlag alignment;
  WidthRule width;
  QStringView tag = {};  ///< how the column's line begins
  int valueAt = 0;       ///< where in the line the value begins
  std::optional<QStringView> (*read)(QStringView value) = wholeValue;
  /// The kind for a descending sort, if different.
  std::optional<CellKind> downwards = std::nullopt;
};

inline constexpr Column columns[] = {
    {Designed(u"App Name"), CellKind::Text, Qt::AlignLeft, {.givesWay = 1}, u"application-label:", 18},
    {Designed(u"Package Name"), CellKind::Text, Qt::AlignLeft, {.givesWay = 1}, u"IP3x", 6},
    {Designed(u"版本"),
     CellKind::Text,
     Qt::AlignLeft,
     {.mostTwips = 4800, .givesWay = 2},
     u"VC3x: versionName:",
     19},
    {Designed(u"Build"),
     CellKind::Number,
     Qt::AlignLeft,
     {},
     u"VC3x: versionCode:",
     19,
     beforeMinSdk,
     CellKind::Text},
    {Designed(u"Used Space"), CellKind::Size, Qt::AlignRight, {.givesWay = 3}, u"TO3x", 6},
    {Designed(u"Used APK Space"), CellKind::Size, Qt::AlignRight, {.givesWay = 3}, u"AP3x", 6},
    {Designed(u"Used OBB Space"), CellKind::Size, Qt::AlignRight, {.givesWay = 3}, u"OB3x", 6},
    {Designed(u"Used App Data"), CellKind::Size, Qt::AlignRight, {.givesWay = 3}, u"AD3x", 6},
    {Designed(u"<- Click to sort"), CellKind::Number, Qt::AlignLeft, {.givesWay = 3}},
    {{}, CellKind::Number, Qt::AlignHCenter, {.leastTwips = 300, .mostTwips = 300}},
};
inline constexpr int inventoryColumns = static_cast<int>(std::size(columns));

static_assert(columns[ColMenuIcon].heading.isEmpty() &&
                  std::count_if(std::begin(columns), std::end(columns),
                                [](const Column& column) { return column.heading.isEmpty(); }) == 1,
              "every column but the cog's has a heading");

/// The grid's sort codes.
enum SortCode {
  SortNone = 0,
  SortNumericAscending = 3,
  SortNumericDescending = 4,
  SortTextAscending = 5,
  SortTextDescending = 6,
};

/// The sort code of a press on the header of `column`, when `lastColumn` was sorted last by `lastCode`: a new
/// column begins ascending, further presses alternate.
constexpr SortCode sortCodeOfPress(int column, int lastColumn, int lastCode) {
  const Column& sorted = columns[column];
  const int code = column == lastColumn ? lastCode : SortNone;
  if (code == SortNone || code == SortTextDescending || code == SortNumericDescending)
    return sorted.kind == CellKind::Text ? SortTextAscending : SortNumericAscending;
  return sorted.downwards.value_or(sorted.kind) == CellKind::Text ? SortTextDescending
                                                                  : SortNumericDescending;
}

}  // namespace orvanta
