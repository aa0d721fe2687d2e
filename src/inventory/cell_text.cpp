#include "inventory/cell_text.h"

#include <QDateTime>
#include <charconv>
#include <cmath>

namespace orvanta {

double cellValue(CellKind kind, QStringView cell) {
  if (kind == CellKind::Text) return 0;
  if (kind == CellKind::Date) {
    QDateTime date = QDateTime::fromString(cell.trimmed().toString(), Qt::ISODate);
    date.setTimeSpec(Qt::UTC);  // no hour comes twice
    return date.isValid() ? static_cast<double>(date.toSecsSinceEpoch()) : 0;
  }
  const QByteArray text = cell.trimmed().toLatin1();
  double number = 0;
  std::from_chars(text.begin(), text.end(), number, std::chars_format::fixed);
  return std::isfinite(number) ? number : 0;
}

std::optional<QStringView> wholeValue(QStringView value) {
  while (value.startsWith(u' ')) value = value.mid(1);
  while (value.endsWith(u' ')) value.chop(1);
  return value;
}

std::optional<QStringView> beforeMinSdk(QStringView value) {
  const qsizetype end = value.indexOf(u"minSdk");
  return end < 0 ? std::nullopt : wholeValue(value.left(end));
}

}  // namespace orvanta
