#pragma once

namespace orvanta {

/// The grid's sort codes.
enum SortCode {
  SortNone = 0,
  SortNumericAscending = 3,
  SortNumericDescending = 4,
  SortTextAscending = 5,
  SortTextDescending = 6,
};

/// The sort code of a press on the header of `column`, when `lastColumn` was sorted last by `lastCode`: a new
/// column begins ascending, further presses alternate. Going up, the columns behind the version are numbers,
/// going down only those behind the build.
constexpr SortCode sortCodeOfPress(int column, int lastColumn, int lastCode) {
  const int code = column == lastColumn ? lastCode : SortNone;
  if (code == SortNone || code == SortTextDescending || code == SortNumericDescending)
    return column > 2 ? SortNumericAscending : SortTextAscending;
  return column > 3 ? SortNumericDescending : SortTextDescending;
}

}  // namespace orvanta
