#pragma once

#include <QRect>
#include <functional>
#include <optional>

namespace orvanta {

/// Whether the point lies in the rectangle; all four edges count as inside, as does the pixel beyond the
/// right and the bottom one.
bool IsOver(const QRect& window, QPoint point);

/// What the paging of a list depends on.
struct PagedList {
  int Height = 0;     ///< of the whole list, header included
  int RowHeight = 0;  ///< of one row, in the same unit
  int Rows = 0;       ///< header and hidden rows included
  int TopRow = 1;     ///< first row below the header
  /// Whether a row is in view; a row that does not exist is not.
  std::function<bool(int row)> RowIsVisible;
};

/// The new top row after one wheel message: a page up where `Rotation` is above 0, else a page down. Nothing
/// if the list does not scroll.
std::optional<int> FlexGridScroll(const PagedList& list, int Rotation);

/// Gathers the small turns of touchpads and fine wheels until they make a notch, which is one message.
class WheelNotches {
 public:
  /// `turn` in eighths of a degree, of which a notch has 120. Returns 1 (away from the user) or -1 when it
  /// completes a notch, else 0. One turn makes at most one message, so that no page is skipped.
  int take(int turn);

 private:
  int m_gathered = 0;
};

}  // namespace orvanta
