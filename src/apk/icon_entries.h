#pragma once

#include <QString>
#include <QStringList>

namespace orvanta {

/// The name that a package has while its icon is read: its last three characters become "zip".
QString temporaryZipPath(const QString& apkPath);

/// The entries of a package that can be its icon, in the order in which they are tried, with backslashes: the
/// one that the badging names, if it ends in "png", then three usual places.
QStringList iconEntries(const QString& badgingIcon);

/// The file name of such an entry; empty if a file of that name would not stay in its folder.
QString iconFileName(const QString& entry);

}  // namespace orvanta
