#include "operations/replies.h"

#include <QRegularExpression>

#include "inventory/cell_text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr qsizetype leadLength = 8;
const QString lead = u"package:"_s;

}  // namespace

QString withoutServerNotes(const QString& reply) {
  QString text = reply;
  while (text.startsWith("* daemon "_L1)) {
    const qsizetype end = text.indexOf(u'\n');
    text = end < 0 ? QString() : text.mid(end + 1);
  }
  return text;
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
  // The tool may have waited for the cable first.
  static const QString waited = u"- waiting for device -\r\n"_s;
  const qsizetype wait = reply.indexOf(waited);
  const QString text = withoutServerNotes(wait < 0 ? reply : reply.mid(wait + waited.size()));
  return text.startsWith("Success"_L1) || text.left(7) == u"完成     "_s;
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
  const QString told = withoutServerNotes(reply);
  for (const QStringView line : QStringView(told).split(u'\n')) {
    const QStringView text = line.trimmed();
    if (text.isEmpty()) continue;
    bool isNumber = false;
    const qint64 bytes = text.toLongLong(&isNumber);
    if (isNumber) {
      ++sizes.files;
      sizes.bytes += bytes;
    } else {
      sizes.complaints += text.toString() + u"\r\n"_s;
    }
  }
  return sizes;
}

}  // namespace orvanta
