#include "adb/listing.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace orvanta {

ListedFiles::ListedFiles(const QString& listing) {
  static const QRegularExpression file(
      u"^-\\S+ +(?:[0-9]+ +)?\\S+ +\\S+ +([0-9]+) +[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2} ([^\\r]+)"_s);
  for (const QStringView line : QStringView(listing).trimmed().tokenize(u'\n')) {
    // Below it the next folder begins.
    if (line.trimmed().isEmpty()) return;
    const QRegularExpressionMatch match = file.match(line.toString());
    if (match.hasMatch()) m_sizes.insert(match.captured(2).toCaseFolded(), match.captured(1).toLongLong());
  }
}

std::optional<qint64> ListedFiles::sizeOf(const QString& name) const {
  const auto found = m_sizes.constFind(name.toCaseFolded());
  return found == m_sizes.constEnd() ? std::nullopt : std::optional(*found);
}

}  // namespace orvanta
