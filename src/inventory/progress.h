#pragma once

#include <QString>
#include <optional>

namespace orvanta {

/// The program's web site, in front of the running count.
inline constexpr QStringView SiteBanner = u"orvanta.example:";

/// The count of apps as the device printed it, without returns, line feeds and asterisks. It can also be an
/// error text.
QString cleanedCount(const QString& reply);

/// The number in a count text if it fits 16 bits.
std::optional<int> countIn(const QString& AppCountText);

/// "Processing Apps: 0 of 60", before the first app was read.
QString processingText(const QString& AppCountText);

/// "<banner> 12 of 60".
QString progressCaption(int apps, const QString& AppCountText);

/// Whole percent of the apps that have been read; 0 if the count is 0 or not a number. Above 100 if the
/// script lists apps that the count left out.
int progressPercent(int apps, const QString& AppCountText);

/// The width in twips of the box that `percent` draws; 0 when it draws none.
int progressBarTwips(int percent);

/// Counts the apps in a stream, wherever its blocks are cut, in one pass over the text.
class AppTagCounter {
 public:
  void feed(const QString& block);
  int apps() const { return m_apps; }

 private:
  QString m_end;  // of the text so far, short of a whole tag
  int m_apps = 0;
};

}  // namespace orvanta
