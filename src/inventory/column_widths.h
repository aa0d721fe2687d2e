#pragma once

#include <QFontMetricsF>
#include <vector>

namespace orvanta {

class AppsModel;

/// What a column takes in pixels.
struct ColumnWidth {
  int whole = 0;     ///< shows every text, as far as the column's rule allows
  int least = 0;     ///< what it keeps when not all columns fit
  int givesWay = 0;  ///< in which turn, 0 for never
};

/// Around a text in its cell, in pixels.
inline constexpr int cellRoom = 7;

/// Longer texts are measured up to here.
inline constexpr qsizetype longestMeasured = 400;

/// The width of `text`, rounded up to whole pixels.
int textWidth(const QString& text, const QFontMetricsF& metrics);

/// Measures the headings, each with `headingRoom` beside it, and all cells. A column that gives way keeps 8
/// characters of its heading and 12 of each text.
std::vector<ColumnWidth> measuredColumns(const AppsModel& apps, const QFontMetricsF& metrics,
                                         int headingRoom);

/// The widths for so much room: the whole ones if all fit, else columns give way in their turns, the widest
/// first, as far as they can. No column gets wider than the room.
std::vector<int> fittedWidths(const std::vector<ColumnWidth>& measured, int room);

}  // namespace orvanta
