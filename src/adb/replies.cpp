#include "adb/replies.h"

#include <QRegularExpression>

#include "adb/storage.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr qsizetype leadLength = 8;
const QString lead = u"package:"_s;
// A server that fails to start prints its log between these two lines.
const QString failedServer = u"ADB server didn't ACK"_s;
const QString failedServerEnd = u"* failed to start daemon"_s;

}  // namespace

QString CTrim(const QString& S1) {
  QString text = S1;
  text.removeIf([](QChar c) {
    const char16_t code = c.unicode();
    return code <= 32 || code == 127 || code == 129 || code == 141 || code == 143 || code == 144 ||
           code == 157;
  });
  return text;
}

bool isServerNote(QStringView line) {
  return line.startsWith(u"* daemon ") || line.startsWith(u"adb server version (") ||
         line.startsWith(u"adb server is out of date");
}

QString withoutServerNotes(const QString& reply) {
  qsizetype begin = 0;
  for (;;) {
    const QStringView rest = QStringView(reply).sliced(begin);
    qsizetype last = begin;
    if (rest.startsWith(failedServer)) {
      last = reply.indexOf(u'\n' + failedServerEnd, begin) + 1;
      if (last == 0) break;
    } else if (!isServerNote(rest)) {
      break;
    }
    const qsizetype end = reply.indexOf(u'\n', last);
    if (end < 0) return {};
    begin = end + 1;
  }
  return reply.sliced(begin);
}

bool listsPackages(const QString& reply) {
  return reply.startsWith(lead) || reply.contains(u'\n' + lead);
}

QString withoutProgress(const QString& reply) {
  static const QRegularExpression progress(
      u"^(?:\\[ *[0-9?]+%\\]|(?:pull|push): building file list)[^\\n]*(?:\\n|$)"_s,
      QRegularExpression::MultilineOption);
  return QString(reply).remove(progress);
}

bool namesPackageFile(const QString& reply) {
  return reply.left(leadLength) == lead;
}

QString packageFileIn(const QString& reply) {
  return CTrim(reply).mid(leadLength);
}

bool saysOneFilePulled(const QString& reply) {
  return reply.contains("1 file pulled"_L1);
}

bool saysFolderPulled(const QString& reply) {
  static const QRegularExpression summary(u"(?:^|[^0-9])([0-9]+) files? pulled"_s);
  const QRegularExpressionMatch match = summary.match(reply);
  return match.hasMatch() && match.captured(1) != u"0"_s && !reply.contains("error: "_L1);
}

bool saysNoFilesPulled(const QString& reply) {
  return reply.contains("0 files pulled"_L1);
}

bool saysNoFiles(const QString& reply) {
  return reply.contains("0 files"_L1);
}

bool saysRemoteMissing(const QString& reply) {
  if (reply.contains(u"没有发现文件      "_s)) return true;
  for (const QStringView line : QStringView(reply).split(u'\n')) {
    const bool gone = line.contains("does not exist"_L1) || line.contains("No such file or directory"_L1);
    const bool onDesktop =
        line.contains("create "_L1) || line.contains("cannot "_L1) || line.contains("failed to copy"_L1);
    if (gone && !onDesktop) return true;
  }
  return false;
}

bool saysUninstalled(const QString& reply) {
  // adb may have waited for the cable first.
  static const QString waited = u"- waiting for device -\r\n"_s;
  const qsizetype wait = reply.indexOf(waited);
  const QString text = wait < 0 ? reply : reply.mid(wait + waited.size());
  return text.startsWith("Success"_L1) || text.left(7) == u"完成     "_s;
}

bool saysSuccess(const QString& reply) {
  static const QRegularExpression line(u"(?:^|[\r\n])Success(?:[\r\n]|$)"_s);
  return reply.contains(line);
}

bool saysConnectionLost(const QString& reply) {
  return reply.contains("connect error"_L1) || reply.contains("cannot Connect"_L1);
}

bool saysLaunched(const QString& reply) {
  return reply.contains("Events injected"_L1);
}

bool saysNoActivity(const QString& reply) {
  return reply.contains("No activities found"_L1);
}

DeviceSizes sizesIn(const QString& reply) {
  DeviceSizes sizes;
  sizes.answered = true;
  for (const QStringView line : QStringView(reply).split(u'\n')) {
    const QStringView text = line.trimmed();
    if (text.isEmpty()) continue;
    bool isNumber = false;
    const qint64 bytes = text.toLongLong(&isNumber);
    if (isNumber && bytes >= 0 && bytes <= largestFile) {
      ++sizes.files;
      sizes.bytes += bytes;
    } else {
      sizes.complaints += text.toString() + u"\r\n"_s;
    }
  }
  return sizes;
}

bool isOnDevice(const QString& fileName, const QString& Listing) {
  return Listing.contains(fileName, Qt::CaseInsensitive);
}

bool listsFiles(const QString& Listing) {
  return Listing.startsWith(u'-') || Listing.contains("\n-"_L1);
}

QString tellingLine(const QString& reply) {
  constexpr QStringView exception = u"Exception: ";
  QString first;
  for (const QStringView part : QStringView(reply).tokenize(u"\r\n")) {
    const QStringView line = part.trimmed();
    if (line.isEmpty()) continue;
    if (const qsizetype at = line.indexOf(exception); at >= 0)
      return line.mid(at + exception.size()).toString();
    if (const qsizetype at = line.indexOf(u"Failure ["); at >= 0) return line.mid(at).toString();
    if (line.startsWith(u"adb: ") || line.contains(u"rror: ") || line.contains(u"Unable to find"))
      return line.toString();
    if (first.isEmpty()) first = line.toString();
  }
  return first;
}

}  // namespace orvanta
