#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace orvanta {

/// A part of a report, such as the versions or the console.
struct ReportPart {
  QString heading;
  QString text;
};

/// What a report must not reveal about its user.
struct PrivateThings {
  QStringList names;    ///< the user's name, as the system and as people write it
  QStringList homes;    ///< paths of the home folder
  QStringList serials;  ///< of devices; those in a device list within the report are found there
};

/// The private data of the user who runs this program.
PrivateThings privateThingsOfThisUser();

/// The parts under their headings, lines ending in LF, with private data replaced: - a home folder is "~",
/// with slashes or backslashes, single or doubled, and percent-encoded; - the user's name is "[user]". An
/// ordinary word of these reports, or a name of one or two Latin letters, is only left out where it is the
/// name of a home folder; - a device's serial, or its address in the network, is "[serial-3f2a]": the same in
/// each report.
QString reportText(const QList<ReportPart>& parts, const PrivateThings& things);

}  // namespace orvanta
