#pragma once

#include <QString>

namespace orvanta {

/// `folder`, or the `platform-tools` in it where only that has `tool`.
QString folderOfTool(const QString& folder, const QString& tool);

/// Gives a file at `path` another name. False when it is still there.
bool setAside(const QString& path);

}  // namespace orvanta
