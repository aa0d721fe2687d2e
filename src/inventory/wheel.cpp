#include "inventory/wheel.h"

#include <algorithm>

namespace orvanta {

namespace {
constexpr int turnsPerNotch = 120;
}

bool IsOver(const QRect& window, QPoint point) {
  return window.adjusted(0, 0, 1, 1).contains(point);
}

std::optional<int> FlexGridScroll(const PagedList& list, int Rotation) {
  if (list.RowHeight <= 0) return std::nullopt;
  int s = list.Height / list.RowHeight;
  if (s > list.Rows) return std::nullopt;
  while (s > 0 && !list.RowIsVisible(list.TopRow + s)) --s;
  return Rotation > 0 ? std::max(list.TopRow - s, 1) : std::min(list.TopRow + s, list.Rows - 1);
}

int WheelNotches::take(int turn) {
  if ((turn > 0) != (m_gathered > 0)) m_gathered = 0;
  m_gathered += turn;
  if (std::abs(m_gathered) < turnsPerNotch) return 0;
  const int direction = m_gathered > 0 ? 1 : -1;
  m_gathered %= turnsPerNotch;
  return direction;
}

}  // namespace orvanta
