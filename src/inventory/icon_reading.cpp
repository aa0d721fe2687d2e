#include "inventory/icon_reading.h"

#include <QBuffer>
#include <QImageReader>

#include "adb/device_names.h"
#include "inventory/script.h"
#include "platform/command_line.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr QStringView mark = u"IC3x: ";
// A small file can unpack to gigabytes.
constexpr int mostPixels = 1024;  // of a side

}  // namespace

QString iconsLine(const Host& host, const QStringList& packages) {
  const QString script =
      u"pm list packages -f -3 </dev/null | while IFS= read -r line; do name=${line##*=}; "
      "path=${line#package:}; path=${path%=*}; case ' %1 ' in *\" $name \"*) "
      "echo \"%2$name $(%3 d icon \"$path\" </dev/null 2>/dev/null)\" ;; esac; done"_s;
  return AdbPrefix(host) + u" shell "_s +
         quotedArgument(script.arg(packages.join(u' '), mark, deviceBadgingTool));
}

std::optional<PrintedIcon> printedIconIn(QStringView line) {
  if (!line.startsWith(mark)) return std::nullopt;
  const QStringView rest = line.mid(mark.size());
  const qsizetype blank = rest.indexOf(u' ');
  if (blank <= 0) return std::nullopt;
  const auto decoded = QByteArray::fromBase64Encoding(rest.mid(blank).trimmed().toLatin1(),
                                                      QByteArray::AbortOnBase64DecodingErrors);
  return PrintedIcon{rest.left(blank).toString(), decoded ? *decoded : QByteArray()};
}

QImage iconOf(const QByteArray& picture) {
  QBuffer buffer;
  buffer.setData(picture);
  QImageReader reader(&buffer, "png");
  const QSize size = reader.size();
  if (size.isEmpty() || size.width() > mostPixels || size.height() > mostPixels) return {};
  const QImage image = reader.read();
  if (image.width() <= iconPixels && image.height() <= iconPixels) return image;
  return image.scaled(iconPixels, iconPixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

}  // namespace orvanta
