#include "backups/backup_names.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int mostNumbers = 10000;
constexpr qsizetype roomForNumber = 6;  // a blank and five digits
constexpr qsizetype longestName = 255;

QString withoutHalves(QString text) {
  for (qsizetype i = 0; i < text.size(); ++i) {
    const bool pair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
    if (pair) {
      ++i;
    } else if (text[i].isSurrogate()) {
      text[i] = u'_';
    }
  }
  return text;
}

QString cut(QString text, qsizetype most) {
  while (text.toUtf8().size() > most) text.chop(text.size() > 1 && text.back().isLowSurrogate() ? 2 : 1);
  return text;
}

}  // namespace

QString safeName(const QString& name, qsizetype most) {
  static const QString refused = u"<>:\"/\\|?*"_s;
  static const QRegularExpression device(
      u"^(con|prn|aux|nul|com[0-9¹²³]|lpt[0-9¹²³]|conin\\$|conout\\$) *(\\.|$)"_s,
      QRegularExpression::CaseInsensitiveOption);
  QString safe = withoutHalves(name);
  for (QChar& c : safe)
    if (c.category() == QChar::Other_Control || refused.contains(c)) c = u'_';
  if (device.match(safe).hasMatch()) safe.prepend(u'_');
  safe = cut(safe, most);
  if (safe.isEmpty()) return u"_"_s;
  for (qsizetype i = safe.size() - 1; i >= 0 && (safe[i] == u' ' || safe[i] == u'.'); --i) safe[i] = u'_';
  return safe;
}

QString backupFolderName(const QString& label, const QString& version, const QString& build,
                         const QString& date) {
  QString end;
  if (!version.isEmpty()) end += u' ' + safeName(version, 60);
  if (!build.isEmpty()) end += u" ("_s + safeName(build, 20) + u')';
  end += u' ' + date;
  const qsizetype room = longestName - roomForNumber - end.toUtf8().size();
  return safeName(safeName(label.simplified(), room).trimmed() + end);
}

QString freeFolder(const QString& parent, const QString& name) {
  for (int number = 1; number < mostNumbers; ++number) {
    const QString path = parent + u'/' + (number == 1 ? name : name + u' ' + QString::number(number));
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink()) return path;
  }
  return {};
}

QString LocalPaths::add(const QString& path) {
  QStringList names = path.split(u'/');
  for (QString& name : names) name = safeName(name);
  const QString plain = names.join(u'/');
  QString local = plain;
  for (int number = 2; m_taken.contains(local.toCaseFolded()); ++number) {
    const QString ending = u'~' + QString::number(number);
    names.back() = cut(plain.section(u'/', -1), longestName - ending.size()) + ending;
    local = names.join(u'/');
  }
  m_taken << local.toCaseFolded();
  return local;
}

}  // namespace orvanta
