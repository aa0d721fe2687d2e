#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

namespace orvanta {

/// The picture in `content`, small enough for a row; null if it is none, or too large to be unpacked.
QImage pictureIn(QByteArray content);

/// The icon of the package at `path`, from the entry that its badging names or from the usual places; null
/// without one.
QImage iconOf(const QString& path, const QString& badgingIcon);

}  // namespace orvanta
