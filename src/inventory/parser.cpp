#include "inventory/parser.h"

#include <QStringView>
#include <optional>

#include "inventory/columns.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

/// A return is no blank: it stays, and keeps a blank in front of it.
QStringView withoutBlanks(QStringView text) {
  while (text.startsWith(u' ')) text = text.mid(1);
  while (text.endsWith(u' ')) text.chop(1);
  return text;
}

struct Tag {
  QStringView text;
  /// Where the value begins: behind the tag's colon and blank.
  qsizetype valueAt;
  InventoryColumn column;
};

constexpr QStringView lastTag = u"AD3x";

constexpr Tag tags[] = {{u"application-label:", 18, ColAppName},
                        {u"TO3x", 6, ColUsedSpace},
                        {u"AP3x", 6, ColApkSpace},
                        {u"OB3x", 6, ColObbSpace},
                        {lastTag, 6, ColDataSpace},
                        {u"VC3x: versionName:", 19, ColVersion}};
constexpr QStringView appTag = u"IP3x";
constexpr qsizetype packageAt = 6;
constexpr QStringView buildTag = u"VC3x: versionCode:";
constexpr qsizetype buildAt = 19;

/// What stands in front of "minSdk"; nothing where the line does not have it.
std::optional<QStringView> buildIn(QStringView line) {
  const qsizetype end = line.indexOf(u"minSdk", buildAt);
  if (end < 0) return std::nullopt;
  return withoutBlanks(line.mid(buildAt, end - buildAt));
}

/// Whether the line bears the tag of a column; its value then goes into `app`, where there is one.
bool takeTagged(QStringView line, InventoryApp* app) {
  for (const Tag& tag : tags) {
    if (!line.startsWith(tag.text)) continue;
    if (app != nullptr) (*app)[tag.column] = withoutBlanks(line.mid(tag.valueAt));
    return true;
  }
  if (!line.startsWith(buildTag)) return false;
  const auto build = buildIn(line);
  if (app != nullptr && build) (*app)[ColBuild] = *build;
  return true;
}

bool isAdbError(const QString& word) {
  return word.startsWith(u"error:"_s) || word.startsWith(u"adb: "_s) || word.startsWith(u"adb.exe: "_s);
}

}  // namespace

Inventory readInventory(QStringView scriptOutput) {
  Inventory inventory;
  inventory.apps.reserve(scriptOutput.count(appTag));
  for (const QStringView line : scriptOutput.tokenize(u'\n')) {
    if (line.startsWith(appTag)) {
      inventory.apps.emplace_back();
      inventory.cut = true;
      inventory.apps.back()[ColPackage] = withoutBlanks(line.mid(packageAt));
    } else if (takeTagged(line, inventory.apps.isEmpty() ? nullptr : &inventory.apps.back())) {
      const bool whole = line.end() != scriptOutput.end();
      if (line.startsWith(lastTag) && whole) inventory.cut = false;
    } else {
      const QString word = line.trimmed().toString();
      if (!word.isEmpty()) inventory.words << word;
      if (!inventory.apps.isEmpty() && isAdbError(word)) inventory.cut = true;
    }
  }
  return inventory;
}

}  // namespace orvanta
