#include "apk/badging.h"

#include <QList>

#include "adb/host.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int headTrackingField = 5;
constexpr int iconField = 9;
constexpr int firstPermissionField = 11;

/// Only blanks are trimmed from a value; line ends and other white space are part of it.
QStringView withoutBlanks(QStringView text) {
  while (text.startsWith(u' ')) text = text.sliced(1);
  while (text.endsWith(u' ')) text.chop(1);
  return text;
}

}  // namespace

QString badgingLine(const Host& host, const QString& apkPath) {
  return AaptPrefix(host) + u" d badging "_s + quotedLocalPath(apkPath, host.style);
}

void readBadging(const QString& output, std::array<QString, 51>& fields, int& permissionCount) {
  if (output.isEmpty()) return;
  const QList<QStringView> pieces = QStringView(output).split(u'\'');
  for (qsizetype i = 0; i < pieces.size(); ++i) {
    const QStringView key = withoutBlanks(pieces[i]);
    const bool hasValue = i + 1 < pieces.size();
    const QStringView value = hasValue ? withoutBlanks(pieces[i + 1]) : QStringView();
    const auto store = [&](const char16_t* wanted, size_t field) {
      if (hasValue && key.contains(QStringView(wanted))) fields[field] = value.toString();
    };
    store(u"package", 1);
    store(u"versionCode", 2);
    store(u"versionName", 3);
    store(u"application-label", 4);
    if (!value.isEmpty()) store(u"icon=", iconField);
    if (key.contains("android.hardware.vr.headtracking"_L1)) fields[headTrackingField] = u"Yes"_s;
    if (key.contains("uses-permission"_L1)) {
      const auto field = static_cast<size_t>(firstPermissionField + permissionCount++);
      if (hasValue && field < fields.size()) fields[field] = value.toString();
    }
  }
}

QString firstWords(const QString& output) {
  constexpr qsizetype most = 300;
  for (const QStringView part : QStringView(output).tokenize(u'\n')) {
    const QStringView line = part.trimmed();
    if (!line.isEmpty()) return line.left(most).toString();
  }
  return {};
}

}  // namespace orvanta
