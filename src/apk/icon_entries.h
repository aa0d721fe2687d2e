#pragma once

#include <QString>
#include <QStringList>

namespace orvanta {

/// The name that a package bears while its icon is read: the last three characters give way to "zip".
QString temporaryZipPath(const QString& apkPath);

/// The entries of a package that can be its icon, in the order in which they are tried, with backslashes: the
/// one that the badging names, if it ends in "png", then three usual places.
QStringList iconEntries(const QString& badgingIcon);

/// The file name of such an entry; empty when it has none that stays in the folder it is put in.
QString iconFileName(const QString& entry);

}  // namespace orvanta
