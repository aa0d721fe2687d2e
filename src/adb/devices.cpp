#include "adb/devices.h"

#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

using State = ListedDevice::State;

constexpr std::array stateWords = {
    std::pair(QStringView(u"device"), State::Device),
    std::pair(QStringView(u"offline"), State::Offline),
    std::pair(QStringView(u"unauthorized"), State::Unauthorized),
    std::pair(QStringView(u"authorizing"), State::Authorizing),
    std::pair(QStringView(u"connecting"), State::Connecting),
    std::pair(QStringView(u"recovery"), State::Recovery),
    std::pair(QStringView(u"sideload"), State::Sideload),
    std::pair(QStringView(u"rescue"), State::Rescue),
    std::pair(QStringView(u"bootloader"), State::Bootloader),
    std::pair(QStringView(u"host"), State::Host),
    std::pair(QStringView(u"detached"), State::Detached),
};

constexpr QStringView noPermissions = u"no permissions";

State stateIn(QStringView words) {
  if (words.startsWith(noPermissions)) return State::NoPermissions;
  const auto* const known = std::find_if(stateWords.begin(), stateWords.end(),
                                         [words](const auto& word) { return word.first == words; });
  return known == stateWords.end() ? State::Unknown : known->second;
}

/// The text between the first `open` and the last `close`.
QString between(QStringView text, QChar open, QChar close) {
  const qsizetype start = text.indexOf(open);
  const qsizetype end = text.lastIndexOf(close);
  return start < 0 || end < start ? QString() : text.sliced(start + 1, end - start - 1).toString();
}

QString modelIn(QStringView properties) {
  static const QString key = u"model:"_s;
  for (const QStringView word : properties.tokenize(u' ', Qt::SkipEmptyParts)) {
    if (word.startsWith(key)) return word.sliced(key.size()).toString().replace(u'_', u' ');
  }
  return {};
}

/// Cuts the properties that -l puts after the state off `line`: "product:x", and "3-1" for a USB port.
QStringView takeProperties(QStringView& line) {
  static const QRegularExpression property(u"^(?:[a-z_]+:\\S*|[0-9]+-[0-9.]+)$"_s);
  const QStringView whole = line;
  for (qsizetype blank = line.lastIndexOf(u' '); blank > 0; blank = line.lastIndexOf(u' ')) {
    if (!property.match(line.sliced(blank + 1)).hasMatch()) break;
    line = line.first(blank).trimmed();
  }
  return whole.sliced(line.size());
}

std::optional<ListedDevice> deviceIn(QStringView line) {
  QStringView serial;
  QStringView words;
  QStringView properties;
  if (const qsizetype tab = line.indexOf(u'\t'); tab >= 0) {
    serial = line.first(tab);
    words = line.sliced(tab + 1);
    properties = takeProperties(words);
  } else {
    // "error: device offline" is no device.
    if (line.first(qMax<qsizetype>(line.indexOf(u' '), 0)).endsWith(u':')) return std::nullopt;
    // A serial can have blanks, so the line is read from its end.
    properties = takeProperties(line);
    qsizetype blank = line.indexOf(u" no permissions");
    if (blank < 0) blank = line.lastIndexOf(u' ');
    if (blank < 0) return std::nullopt;
    serial = line.first(blank);
    words = line.sliced(blank + 1);
    // Any sentence from adb is a row of words too.
    if (stateIn(words) == State::Unknown) return std::nullopt;
  }
  serial = serial.trimmed();
  words = words.trimmed();
  if (serial.isEmpty() || words.isEmpty()) return std::nullopt;
  ListedDevice device{serial.toString(), stateIn(words), words.toString(), {}, {}, modelIn(properties)};
  if (device.state == State::NoPermissions) {
    const qsizetype help = words.indexOf(u'[');
    device.address = between(words, u'[', u']');
    device.explanation = between(help < 0 ? words : words.first(help), u'(', u')');
  }
  return device;
}

}  // namespace

bool answersLikeADevice(const QString& devicesOutput) {
  constexpr qsizetype longestHeading = 35;
  // The only answer of an adb without a server, and longer than the heading.
  const bool noServer = devicesOutput.startsWith("adb: failed to check server version"_L1);
  return devicesOutput.size() > longestHeading && !noServer;
}

DeviceList readDevices(const QString& reply) {
  DeviceList list;
  // Some versions leave a carriage return in the middle of a row.
  const QString text = QString(reply).remove(u'\r');
  for (const QStringView part : QStringView(text).tokenize(u'\n')) {
    const QStringView line = part.trimmed();
    if (line.isEmpty() || line.startsWith(u"* daemon ")) continue;
    if (line == u"List of devices attached") {
      list.headed = true;
      continue;
    }
    const auto device = list.headed ? deviceIn(line) : std::nullopt;
    if (device) {
      list.devices += *device;
    } else {
      list.complaints += line.toString();
    }
  }
  return list;
}

}  // namespace orvanta
