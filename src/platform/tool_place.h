#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace orvanta {

/// What came of it when adb was to be put beside the program.
struct ToolPlacing {
  enum class Outcome {
    Placed,
    NotThere,     ///< the folder has no adb, or not all that belongs to it
    NotRunnable,  ///< there is one, and the user may not run it
    NoRight,      ///< the user may not write into the program's folder
  };
  Outcome outcome = Outcome::Placed;
  QString
      what;  ///< the file that is missing or unfit; without the right to write, what an administrator does
};

/// Puts the adb of `folder`, or of the `platform-tools` in it, beside the program in `programFolder`: Linux
/// links it, Windows copies it with its two libraries. What stands there under the name, and is no link, is
/// kept as `adb.old`, `adb.old2` ...
ToolPlacing placeTool(const QString& folder, const QString& programFolder);

/// Folders of this computer from which placeTool() can take adb, each once: those of the path, of
/// `ANDROID_HOME` and `ANDROID_SDK_ROOT`, and the usual ones below the user's `home` and elsewhere.
QStringList placesOfTool(const QProcessEnvironment& environment, const QString& home,
                         const QString& programFolder);

}  // namespace orvanta
