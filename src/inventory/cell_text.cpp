#include "inventory/cell_text.h"

#include <cmath>

namespace orvanta {

QString CTrim(const QString& S1) {
  QString text = S1;
  text.removeIf([](QChar c) {
    const char16_t code = c.unicode();
    return code <= 32 || code == 127 || code == 129 || code == 141 || code == 143 || code == 144 ||
           code == 157;
  });
  return text;
}

qint64 tenthsIn(QStringView size) {
  bool isNumber = false;
  const double value = size.trimmed().toDouble(&isNumber);
  return isNumber && std::isfinite(value) ? std::llround(value * 10) : 0;
}

QString tenthsText(qint64 tenths) {
  return QString::number(static_cast<double>(tenths) / 10, 'f', 1);
}

}  // namespace orvanta
