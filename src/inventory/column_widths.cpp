#include "inventory/column_widths.h"

#include <cmath>
#include <numeric>

#include "inventory/apps_model.h"
#include "ui/twips.h"

namespace orvanta {

namespace {

constexpr qsizetype leastOfCell = 12;
constexpr qsizetype leastOfHeading = 8;

/// A text cut to so many characters, with an ellipsis.
QString shortened(QStringView text, qsizetype characters) {
  return text.size() > characters ? text.left(characters).toString() + QChar(0x2026) : text.toString();
}

/// Finds the widest of many texts. Laying out every one would take most of a large inventory's time. The sum
/// of its characters' widths is close enough to tell which texts cannot be the widest.
class Ruler {
 public:
  explicit Ruler(const QFontMetricsF& metrics) : m_metrics(metrics), m_advances(0x10000, -1) {}

  /// `soFar`, or what `text` needs in a cell, shortened to so many characters, if that is more.
  int widest(int soFar, QStringView text, qsizetype characters) {
    double rough = cellRoom;
    for (const QChar c : text.left(characters)) rough += advance(c);
    if (text.size() > characters) rough += advance(QChar(0x2026));
    return rough <= soFar ? soFar
                          : std::max(soFar, textWidth(shortened(text, characters), m_metrics) + cellRoom);
  }

 private:
  double advance(QChar c) {
    if (c.isSurrogate())
      c = QChar(0x4e00);  // half of a surrogate pair has no width of its own; this is as wide as any
    float& known = m_advances[c.unicode()];
    if (known < 0) known = static_cast<float>(m_metrics.horizontalAdvance(c));
    return known;
  }

  QFontMetricsF m_metrics;
  std::vector<float> m_advances;
};

}  // namespace

int textWidth(const QString& text, const QFontMetricsF& metrics) {
  return static_cast<int>(std::ceil(metrics.horizontalAdvance(text.left(longestMeasured).trimmed())));
}

std::vector<ColumnWidth> measuredColumns(const AppsModel& apps, const QFontMetricsF& metrics,
                                         int headingRoom) {
  Ruler ruler(metrics);
  std::vector<ColumnWidth> measured;
  for (int column = 0; column < inventoryColumns; ++column) {
    const QString heading = columns[column].heading.shown();
    const WidthRule& rule = columns[column].width;
    const int besideHeading = headingRoom + cellRoom;
    int whole = textWidth(heading, metrics) + besideHeading;
    int least = textWidth(shortened(heading, leastOfHeading), metrics) + besideHeading;
    for (int record = 0; record < apps.rowCount(); ++record) {
      const QStringView text = QStringView(apps.cell(record, column).text).trimmed();
      whole = ruler.widest(whole, text, longestMeasured);
      least = ruler.widest(least, text, leastOfCell);
    }
    whole = std::clamp(whole, pixels(rule.leastTwips), pixels(rule.mostTwips));
    measured.push_back({whole, std::min(least, whole), rule.givesWay});
  }
  return measured;
}

std::vector<int> fittedWidths(const std::vector<ColumnWidth>& measured, int room) {
  std::vector<int> widths;
  for (const ColumnWidth& column : measured) widths.push_back(std::min(column.whole, room));
  const auto nextToGiveWay = [&measured, &widths] {
    std::optional<size_t> next;
    const auto rank = [&](size_t at) { return std::pair(measured[at].givesWay, -widths[at]); };
    for (size_t at = 0; at < widths.size(); ++at) {
      const bool can = measured[at].givesWay > 0 && widths[at] > measured[at].least;
      if (can && (!next || rank(at) < rank(*next))) next = at;
    }
    return next;
  };
  for (int excess = std::accumulate(widths.begin(), widths.end(), -room); excess > 0; --excess) {
    const auto next = nextToGiveWay();
    if (!next) break;
    --widths[*next];
  }
  return widths;
}

}  // namespace orvanta
