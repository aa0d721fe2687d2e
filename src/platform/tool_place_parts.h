#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace orvanta {

/// `folder`, or the `platform-tools` in it where only that has `tool`.
QString folderOfTool(const QString& folder, const QString& tool);

/// Gives a file at `path` another name. False when it is still there.
bool setAside(const QString& path);

/// The folder that the adb of `folder`, or of the `platform-tools` in it, really lies in, with all that
/// belongs to it; empty where it is not whole, or may not be run.
QString wholeToolIn(const QString& folder);

/// Where the makers of adb, and this system's ways to install it, put it.
QStringList usualToolFolders(const QProcessEnvironment& environment, const QString& home);

}  // namespace orvanta
