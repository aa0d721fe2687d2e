#include "core/tools.h"

#include <QCollator>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <cmath>

#include "platform/command_line.h"
#include "ui/awaited.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

QString toolPath(const Host& host, const QString& tool) {
  // A quote cannot be escaped in a line's first word; but a bare name is looked up beside the executable
  // first.
  if (host.style.namesNeedEscapes && host.applicationFolder.contains(QuoteChar)) return tool;
  return quotedLocalPath(host.applicationFolder + host.style.separator + tool + host.style.executableSuffix,
                         host.style);
}

}  // namespace

Host Host::current() {
  return {HostStyle::native(), QDir::toNativeSeparators(QCoreApplication::applicationDirPath())};
}

QString AdbPrefix(const Host& host) {
  return toolPath(host, u"adb"_s);
}

QString AaptPrefix(const Host& host) {
  return toolPath(host, u"aapt"_s);
}

QString quotedLocalPath(const QString& path, const HostStyle& style) {
  if (style.namesNeedEscapes) return quotedArgument(path);
  return QuoteChar + path + QuoteChar;
}

QString devicePathArgument(const QString& path) {
  const bool fallsApart =
      std::any_of(path.begin(), path.end(), [](QChar c) { return c.isSpace() || c == QuoteChar; });
  return fallsApart ? quotedArgument(path) : path;
}

QString ParentPath(const QString& path, const HostStyle& style) {
  return path.left(path.lastIndexOf(style.separator) + 1);
}

QString BaseName(const QString& path, const HostStyle& style) {
  const QString name = path.mid(path.lastIndexOf(style.separator) + 1);
  return name.mid(name.lastIndexOf(u'/') + 1);
}

bool FolderExists(const QString& sFolder) {
  return !sFolder.isEmpty() && QFileInfo(sFolder).isDir();
}

QStringList filesDirectlyIn(const QString& folder) {
  if (folder.isEmpty()) return {};
  QStringList names = QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::Readable, QDir::NoSort);
  // The C locale would compare bytes, whatever the mode.
  QCollator byValue{QLocale(QLocale::English)};
  byValue.setNumericMode(true);
  byValue.setCaseSensitivity(Qt::CaseInsensitive);
  std::sort(names.begin(), names.end(), [&byValue](const QString& a, const QString& b) {
    const int order = byValue.compare(a, b);
    return order != 0 ? order < 0 : a < b;
  });
  return names;
}

bool isFitForShell(const QString& text) {
  static const QString actedOn = u";&|$<>(){}*?!~#'\"`\\[]"_s;
  return std::none_of(text.begin(), text.end(), [](QChar c) {
    return c.isSpace() || c.category() == QChar::Other_Control || actedOn.contains(c);
  });
}

bool isFitPackageName(const QString& name) {
  constexpr qsizetype longestFileName = 255;
  const bool ascii = std::all_of(name.begin(), name.end(), [](QChar c) { return c.unicode() < 0x7F; });
  return ascii && isFitForShell(name) && name.size() <= longestFileName && !name.contains(u'/') &&
         !name.startsWith(u'-') && name != u"."_s && name != u".."_s;
}

QString externalStorageIn(const QString& reply) {
  return reply.chopped(qMin<qsizetype>(2, reply.size()));
}

bool isPlainDevicePath(const QString& storage) {
  constexpr qsizetype longestPath = 4096;
  return storage.startsWith(u'/') && storage.size() <= longestPath && isFitForShell(storage);
}

QCoro::Task<> Pause(double seconds) {
  const Delay delay(std::chrono::milliseconds(std::lround(seconds * 1000)));
  co_await delay;
}

}  // namespace orvanta
