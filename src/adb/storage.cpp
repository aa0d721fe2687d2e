#include "adb/storage.h"

#include <QList>
#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr QStringView unitLetters = u"BKMGTP";
constexpr qint64 unitStep = 1024;

/// "9.8G", "27K", "0"; a plain number counts blocks of `block` bytes.
std::optional<StorageFigure> figureIn(QStringView word, qint64 block) {
  auto unit = static_cast<double>(block);
  if (!word.isEmpty() && !word.back().isDigit()) {
    const qsizetype power = unitLetters.indexOf(word.back().toUpper());
    if (power < 0) return std::nullopt;
    unit = std::pow(static_cast<double>(unitStep), static_cast<double>(power));
    word.chop(1);
  }
  constexpr double tooMany = 1e18;
  const bool plain =
      std::all_of(word.begin(), word.end(), [](QChar c) { return c == u'.' || (c >= u'0' && c <= u'9'); });
  bool isNumber = false;
  const double number = word.toDouble(&isNumber);
  if (!plain || !isNumber || number * unit > tooMany) return std::nullopt;
  const qsizetype point = word.indexOf(u'.');
  const auto decimals = static_cast<double>(point < 0 ? 0 : word.size() - point - 1);
  const double lastDigit = unit / std::pow(10.0, decimals);
  return StorageFigure{std::llround(number * unit), std::llround(std::floor(lastDigit / 2))};
}

/// The size of a block in a heading such as "1K-blocks"; nothing for any other heading.
std::optional<qint64> blockSizeIn(QStringView heading) {
  constexpr QStringView suffix = u"-blocks";
  if (!heading.endsWith(suffix)) return std::nullopt;
  const auto size = figureIn(heading.chopped(suffix.size()), 1);
  return size ? std::optional(size->bytes) : std::nullopt;
}

/// The three figures of a row: the first three consecutive words that are figures. Before them come the name
/// of the file system, which can have blanks, and with some options its type.
std::optional<StorageRoom> roomIn(const QList<QStringView>& words, qint64 block) {
  for (qsizetype i = 0; i + 2 < words.size(); ++i) {
    const auto size = figureIn(words[i], block);
    const auto used = size ? figureIn(words[i + 1], block) : std::nullopt;
    const auto available = used ? figureIn(words[i + 2], block) : std::nullopt;
    if (available) return StorageRoom{*size, *used, *available};
  }
  return std::nullopt;
}

}  // namespace

QString externalStorageIn(const QString& reply) {
  return reply.chopped(qMin<qsizetype>(2, reply.size()));
}

QString KeepDigits(const QString& text) {
  QString digits;
  std::copy_if(text.begin(), text.end(), std::back_inserter(digits),
               [](QChar c) { return c >= u'0' && c <= u'9'; });
  return digits;
}

std::array<QString, 5> storageFiguresIn(const QString& output) {
  std::array<QString, 5> StorageFigures;
  size_t count = 0;
  // A figure needs a blank before it and a character after it.
  for (qsizetype i = 1; i + 1 < output.size(); ++i) {
    if (output[i] != u' ' || output[i + 1] == u' ') continue;
    const QString digits = KeepDigits(output.mid(i, 4));
    if (digits.isEmpty()) continue;
    if (++count == StorageFigures.size()) break;
    StorageFigures[count] = digits;
  }
  return StorageFigures;
}

std::optional<qint64> freeSpace(const QString& size, const QString& used) {
  bool sizeIsNumber = false;
  bool usedIsNumber = false;
  const qint64 difference = size.toLongLong(&sizeIsNumber) - used.toLongLong(&usedIsNumber);
  if (!sizeIsNumber || !usedIsNumber) return std::nullopt;
  return difference;
}

std::optional<StorageRoom> storageRoomIn(const QString& output) {
  std::optional<qint64> block;
  std::optional<StorageRoom> room;
  for (const QStringView line : QStringView(output).tokenize(u'\n')) {
    QList<QStringView> words;
    for (const QStringView word : line.trimmed().tokenize(u' ', Qt::SkipEmptyParts)) words += word;
    if (words.size() > 3 && words[0] == u"Filesystem") {
      block = 1;
      for (const QStringView word : words) block = blockSizeIn(word).value_or(*block);
      continue;
    }
    // A long name has a line to itself; its figures are in the next one.
    const auto found = block ? roomIn(words, *block) : std::nullopt;
    if (!found) continue;
    if (room) return std::nullopt;
    room = found;
  }
  return room;
}

QString readableSize(qint64 bytes) {
  static const std::array units = {u"B"_s, u"KiB"_s, u"MiB"_s, u"GiB"_s, u"TiB"_s, u"PiB"_s};
  // From here on rounding would give four figures.
  constexpr double next = 999.5;
  constexpr double withDecimal = 99.95;
  auto number = static_cast<double>(qMax<qint64>(bytes, 0));
  size_t unit = 0;
  for (; number >= next && unit + 1 < units.size(); ++unit) number /= static_cast<double>(unitStep);
  const int decimals = unit > 0 && number < withDecimal ? 1 : 0;
  return QString::number(number, 'f', decimals) + u' ' + units[unit];
}

}  // namespace orvanta
