#include "adb/host.h"

#include <QCoreApplication>
#include <QDir>
#include <algorithm>

#include "platform/command_line.h"

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

QString quotedLocalFolder(const QString& path, const HostStyle& style) {
  const bool endsOpen = !style.namesNeedEscapes && path.endsWith(u'\\');
  return quotedLocalPath(endsOpen ? path + u'\\' : path, style);
}

QString devicePathArgument(const QString& path) {
  const bool fallsApart =
      std::any_of(path.begin(), path.end(), [](QChar c) { return c.isSpace() || c == QuoteChar; });
  return fallsApart ? quotedArgument(path) : path;
}

QString shellWord(const QString& text) {
  return u'\'' + QString(text).replace(u'\'', u"'\\''"_s) + u'\'';
}

}  // namespace orvanta
