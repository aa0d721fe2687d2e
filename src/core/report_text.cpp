#include "core/report_text.h"

#include <QCryptographicHash>
#include <QDir>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QUrl>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

// A folder separator; its repetition is bounded, so that matching a row of slashes stays linear.
const QString separator = u"(?:[\\\\/]{1,4}|%2F|%5C)"_s;
const QString notInWordBefore = u"(?:(?<![A-Za-z0-9_])|(?<=%[0-9A-F][0-9A-F]))"_s;
const QString notInWordAfter = u"(?![A-Za-z0-9_])"_s;
constexpr qsizetype mostSerials = 64;

/// A pattern for `text` as it is, or percent-encoded.
QString literally(const QString& text) {
  const QString encoded = QString::fromLatin1(QUrl::toPercentEncoding(text));
  const QString plain = QRegularExpression::escape(text);
  return encoded == text ? plain : u"(?:%1|%2)"_s.arg(plain, QRegularExpression::escape(encoded));
}

bool isLatin(QChar c) {
  return c.unicode() < 0x80 && (c.isLetterOrNumber() || c == u'_');
}

/// Matches `text` only as a whole word. Chinese has no blanks between words, so next to it there is nothing
/// to check.
QString asWord(const QString& text, const QString& pattern) {
  return (isLatin(text.front()) ? notInWordBefore : QString()) + pattern +
         (isLatin(text.back()) ? notInWordAfter : QString());
}

void replaceAll(QString& text, const QStringList& patterns, const QString& mark) {
  if (patterns.isEmpty()) return;
  text.replace(QRegularExpression(patterns.join(u'|'), QRegularExpression::CaseInsensitiveOption), mark);
}

/// Empty for a root folder, which is not a home.
QString homePattern(const QString& home) {
  const QStringList folders = QString(home).replace(u'\\', u'/').split(u'/', Qt::SkipEmptyParts);
  if (folders.isEmpty() || (folders.size() == 1 && folders.first().endsWith(u':'))) return {};
  QStringList patterns;
  for (const QString& folder : folders) patterns << literally(folder);
  const bool fromRoot = home.startsWith(u'/') || home.startsWith(u'\\');
  return (fromRoot ? separator : QString()) + asWord(u'/' + folders.last(), patterns.join(separator));
}

/// A name that identifies nobody, or that matches ordinary text.
bool isOrdinary(const QString& name) {
  static const QSet<QString> words = {
      u"adb"_s,     u"admin"_s, u"administrator"_s, u"android"_s, u"app"_s,    u"data"_s,    u"device"_s,
      u"error"_s,   u"guest"_s, u"home"_s,          u"linux"_s,   u"oculus"_s, u"orvanta"_s, u"owner"_s,
      u"package"_s, u"quest"_s, u"root"_s,          u"sdcard"_s,  u"serial"_s, u"shell"_s,   u"system"_s,
      u"test"_s,    u"usb"_s,   u"user"_s,          u"windows"_s};
  const bool latin = std::all_of(name.begin(), name.end(), [](QChar c) { return c.unicode() < 0x80; });
  return name.size() < (latin ? 3 : 2) || words.contains(name.toLower());
}

/// The name that Windows gives a folder with a long name for old programs: ANNAMA~1.
QString shortNamePattern(const QString& name) {
  constexpr qsizetype kept = 6;
  QString letters = name;
  letters.remove(QRegularExpression(u"[ .]"_s));
  return QRegularExpression::escape(letters.left(kept)) + u"~[0-9]"_s;
}

void leaveOutNames(QString& text, const QStringList& names) {
  static const QString parents = u"(?<=home|users|media|user|settings)"_s;
  QStringList folders;
  QStringList words;
  QStringList all = names;
  // First and last name are names as well.
  for (const QString& name : names) all += name.split(u' ', Qt::SkipEmptyParts);
  for (const QString& given : all) {
    const QString name = given.trimmed();
    if (name.isEmpty()) continue;
    folders << asWord(name, literally(name)) << shortNamePattern(name);
    if (!isOrdinary(name)) words << asWord(name, literally(name));
  }
  if (folders.isEmpty()) return;
  text.replace(QRegularExpression(u"%1(%2)(?:%3)"_s.arg(parents, separator, folders.join(u'|')),
                                  QRegularExpression::CaseInsensitiveOption),
               u"\\1[user]"_s);
  replaceAll(text, words, u"[user]"_s);
}

/// 192.168.1.5 of 192.168.1.5:5555.
QString withoutPort(const QString& serial) {
  const qsizetype port = serial.lastIndexOf(u':');
  return port > 0 ? serial.left(port) : serial;
}

/// The given ones, and those in lists of devices.
QStringList serialsIn(const QString& text, const QStringList& given) {
  static const QRegularExpression row(
      u"^([^\\t\\n]+)\\t(?:device|offline|unauthorized|authorizing|connecting|no permissions|recovery|sideload)"_s,
      QRegularExpression::MultilineOption);
  QStringList serials = given;
  for (auto match = row.globalMatch(text); match.hasNext() && serials.size() < mostSerials;)
    serials << match.next().captured(1).trimmed();
  for (const QString& serial : QStringList(serials)) serials << withoutPort(serial);
  serials.removeIf([](const QString& serial) {
    constexpr qsizetype shortest = 4;
    return serial.size() < shortest ||
           std::none_of(serial.begin(), serial.end(), [](QChar c) { return c.isDigit(); });
  });
  serials.removeDuplicates();
  // If one is the beginning of another, the longer one is tried first.
  std::sort(serials.begin(), serials.end(),
            [](const QString& a, const QString& b) { return a.size() > b.size(); });
  return serials;
}

void leaveOutSerials(QString& text, const QStringList& given) {
  for (const QString& serial : serialsIn(text, given)) {
    const QByteArray hash =
        QCryptographicHash::hash(withoutPort(serial).toUtf8(), QCryptographicHash::Sha256).toHex();
    replaceAll(text, {asWord(serial, literally(serial))},
               u"[serial-%1]"_s.arg(QLatin1StringView(hash.first(4))));
  }
}

}  // namespace

PrivateThings privateThingsOfThisUser() {
  PrivateThings things;
  const QDir home = QDir::home();
  things.homes = {home.path(), home.canonicalPath()};
  things.names = {home.dirName()};
  for (const char* variable : {"USER", "LOGNAME", "USERNAME"}) things.names << qEnvironmentVariable(variable);
  things.names.removeDuplicates();
  return things;
}

QString reportText(const QList<ReportPart>& parts, const PrivateThings& things) {
  QString text;
  for (const ReportPart& part : parts) {
    if (!text.isEmpty()) text += u'\n';
    text += u"== "_s + part.heading + u" ==\n"_s + part.text;
    if (!text.endsWith(u'\n')) text += u'\n';
  }
  // replace() would move the rest of the text once for every thousand line ends. A text ends in a NUL.
  text.removeIf([](const QChar& c) { return c == u'\r' && *(&c + 1) == u'\n'; });

  QStringList homes;
  for (const QString& home : things.homes) {
    if (const QString pattern = homePattern(home); !pattern.isEmpty()) homes << pattern;
  }
  replaceAll(text, homes, u"~"_s);
  leaveOutNames(text, things.names);
  leaveOutSerials(text, things.serials);
  return text;
}

}  // namespace orvanta
