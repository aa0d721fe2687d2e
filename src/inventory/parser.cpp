#include "inventory/parser.h"

#include "adb/replies.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

/// The line of this column is the last of an app.
constexpr InventoryColumn lastColumn = ColDataSpace;

bool isTagged(QStringView line, const Column& column) {
  return !column.tag.isEmpty() && line.startsWith(column.tag);
}

bool isAdbError(const QString& word) {
  return word.startsWith(u"error:"_s) || word.startsWith(u"adb: "_s) || word.startsWith(u"adb.exe: "_s);
}

}  // namespace

Inventory readInventory(QStringView scriptOutput) {
  Inventory inventory;
  inventory.apps.reserve(scriptOutput.count(columns[ColPackage].tag));
  for (const QStringView line : scriptOutput.tokenize(u'\n')) {
    bool tagged = false;
    // Several columns may read one line.
    for (size_t at = 0; at < std::size(columns); ++at) {
      const Column& column = columns[at];
      if (!isTagged(line, column)) continue;
      tagged = true;
      if (at == ColPackage) {
        inventory.apps.emplace_back();
        inventory.cut = true;
      }
      if (inventory.apps.isEmpty()) continue;
      if (const auto cell = column.read(line.mid(column.valueAt))) inventory.apps.back()[at] = *cell;
      const bool whole = line.end() != scriptOutput.end();
      if (at == lastColumn && whole) inventory.cut = false;
    }
    if (tagged) continue;
    const QString word = line.trimmed().toString();
    if (!word.isEmpty() && !isServerNote(word)) inventory.words << word;
    if (!inventory.apps.isEmpty() && isAdbError(word)) inventory.cut = true;
  }
  return inventory;
}

}  // namespace orvanta
