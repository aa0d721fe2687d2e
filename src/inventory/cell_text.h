#pragma once

#include <QString>
#include <optional>

namespace orvanta {

/// What the cells of a column are.
enum class CellKind {
  Text,
  Number,
  Size,  ///< in MiB
  Date,  ///< as dumpsys prints it, "2023-01-31 23:59:59"
};

/// What a cell is sorted by as a number: the number at its beginning, or the seconds of its date; 0 if it has
/// neither.
double cellValue(CellKind kind, QStringView cell);

/// The value of a tagged line as the text of a cell: trimmed of blanks. A carriage return is not a blank: it
/// stays, as do blanks before it.
std::optional<QStringView> wholeValue(QStringView value);

/// The same for the part before "minSdk"; nothing if the value does not contain it.
std::optional<QStringView> beforeMinSdk(QStringView value);

}  // namespace orvanta
