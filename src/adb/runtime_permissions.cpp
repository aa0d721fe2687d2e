#include "adb/runtime_permissions.h"

#include <limits>
#include <vector>

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

struct Entry {
  QString name;
  bool granted = false;
};

/// In `android.permission.CAMERA: granted=true` the offset of the value from the colon.
constexpr qsizetype valueBehindColon = 10;

Entry entryIn(QStringView line) {
  const qsizetype colon = line.indexOf(u':');
  const qsizetype value = colon + valueBehindColon;
  return {line.left(qMax<qsizetype>(colon, 0)).toString(), value < line.size() && line[value] == u't'};
}

}  // namespace

RuntimePermissions readRuntimePermissions(const QString& reply) {
  // One pass over the text, however many headings it has: each heading only notes where its entries begin.
  std::vector<Entry> entries;
  std::vector<size_t> headings;
  for (const QStringView part : QStringView(reply).tokenize(u"\r\n")) {
    const QStringView line = part.trimmed();
    if (!headings.empty() && line.contains(u"android.permission")) entries.push_back(entryIn(line));
    if (line.contains(u"runtime permissions")) headings.push_back(entries.size());
  }

  RuntimePermissions found;
  size_t count = 0;
  for (const size_t heading : headings) {
    for (size_t i = heading; i < entries.size() && count + 1 < found.RuntimePermNames.size(); ++i) {
      ++count;
      found.RuntimePermNames[count] = entries[i].name;
      found.RuntimePermStates[count] = entries[i].granted ? u"1"_s : u"0"_s;
    }
  }
  quint64 all = 0;
  for (const size_t heading : headings) all += entries.size() - heading;
  found.RuntimePermCount = static_cast<qint32>(qMin<quint64>(all, std::numeric_limits<qint32>::max()));
  return found;
}

}  // namespace orvanta
