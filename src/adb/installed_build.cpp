#include "adb/installed_build.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString installedBuildIn(const QString& output) {
  constexpr auto code = "versionCode="_L1;
  const qsizetype start = output.indexOf(code);
  const qsizetype end = output.indexOf("minSdk="_L1);
  if (start < 0 || end < start + code.size()) return {};
  QStringView number = QStringView(output).sliced(start + code.size(), end - start - code.size());
  while (number.startsWith(u' ')) number = number.sliced(1);
  while (number.endsWith(u' ')) number.chop(1);
  return number.toString();
}

bool knowsPackage(const QString& reply) {
  return reply.contains(u"Package ["_s);
}

QHash<QString, QString> buildsIn(const QString& reply) {
  QHash<QString, QString> builds;
  const QString before = u"package:"_s;
  const QString between = u" versionCode:"_s;
  for (const QString& line : reply.split(u'\n')) {
    const QString text = line.trimmed();
    const qsizetype at = text.indexOf(between);
    if (text.startsWith(before) && at > 0)
      builds[text.mid(before.size(), at - before.size())] = text.mid(at + between.size()).section(u' ', 0, 0);
  }
  return builds;
}

}  // namespace orvanta
