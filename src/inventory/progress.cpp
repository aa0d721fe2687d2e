#include "inventory/progress.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString cleanedCount(const QString& reply) {
  QString text = reply;
  return text.remove(u'\r').remove(u'\n').remove(u'*');
}

std::optional<int> countIn(const QString& AppCountText) {
  bool isNumber = false;
  const qint16 count = QStringView(AppCountText).trimmed().toShort(&isNumber, 10);
  return isNumber ? std::optional<int>(count) : std::nullopt;
}

QString processingText(const QString& AppCountText) {
  return designed(u"Processing Apps: 0 of %1").arg(AppCountText);
}

QString progressCaption(int apps, const QString& AppCountText) {
  return designed(u"%1 %2 of %3").arg(SiteBanner, QString::number(apps), AppCountText);
}

int progressPercent(int apps, const QString& AppCountText) {
  const auto count = countIn(AppCountText);
  if (!count || *count == 0) return 0;
  const double percent = std::floor(static_cast<double>(apps) / *count * 100);
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(std::clamp<double>(percent, Limits::min(), Limits::max()));
}

int progressBarTwips(int percent) {
  constexpr int twipsPerPercent = 70;
  constexpr int farBeyondTheEdge = std::numeric_limits<int>::max() / twipsPerPercent;
  return percent > 1 ? std::min(percent, farBeyondTheEdge) * twipsPerPercent : 0;
}

void AppTagCounter::feed(const QString& block) {
  constexpr QStringView tag = u"IP3x";
  const QString text = m_end + block;
  m_apps += static_cast<int>(text.count(tag));
  // No suffix of the tag is also its prefix, so a part kept here was not counted.
  m_end = text.right(tag.size() - 1);
}

}  // namespace orvanta
