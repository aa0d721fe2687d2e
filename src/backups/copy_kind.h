#pragma once

#include <QString>

namespace orvanta {

/// What a place of a backup holds. Both folders of an app, its expansion files and its data, are copied under
/// the package's name, so what lies in them has to tell which one it is.
enum class CopyKind {
  Nothing,         ///< nothing at all, or an empty folder
  File,            ///< a file, or a link that leads nowhere
  ExpansionFiles,  ///< a folder that holds only files, at least one of them an `.obb`
  Data,            ///< any other folder
};

CopyKind copyKindAt(const QString& path);

}  // namespace orvanta
