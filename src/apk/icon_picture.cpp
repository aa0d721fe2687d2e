#include "apk/icon_picture.h"

#include <QFileInfo>
#include <QImageReader>

#include "ui/picture_box.h"

namespace orvanta {

namespace {

constexpr int mostPixelsASide = 4096;

/// Plain pixel formats only: the file is not trusted, and formats that are programs can do anything.
bool isPixelFormat(const QByteArray& format) {
  static const QList<QByteArray> known = {"png", "jpeg", "gif", "bmp", "ico"};
  return known.contains(format);
}

}  // namespace

bool ShowPicture(const QString& path, PictureBox* target) {
  if (path.trimmed().isEmpty() || target == nullptr || !QFileInfo(path).isFile()) return false;
  QImageReader reader(path);
  // The name proves nothing: many files called .png are some other format.
  reader.setDecideFormatFromContent(true);
  if (!isPixelFormat(reader.format())) return false;
  const QSize size = reader.size();
  if (size.isEmpty() || size.width() > mostPixelsASide || size.height() > mostPixelsASide) return false;
  QImage picture = reader.read();
  if (picture.isNull()) return false;
  // A name such as x@2x.png would halve the drawn size.
  picture.setDevicePixelRatio(1);
  target->setPicture(picture);
  return true;
}

}  // namespace orvanta
