#pragma once

#include <QString>
#include <array>

namespace orvanta {

/// What several forms share. One instance for the life of the process, owned by the composition root.
struct Module1 {
  /// While true, text from the main window's runner does not reach the console. It is no lock.
  bool CommandBusy = false;

  /// Entries of the expansion-file list. It counts on past the last index that the arrays have.
  qint32 ObbFileCount = 0;
  /// File name and full local path of entry i, from index 1 on; index 0 is not used.
  std::array<QString, 256> ObbFileNames;
  std::array<QString, 256> ObbFilePaths;
  /// The user pressed the button of the selection window at least once in this run of the program.
  bool ObbSelectionConfirmed = false;

  /// The installed-apps window was closed once; it opens once per run of the program.
  bool InstalledAppsClosed = false;
};

}  // namespace orvanta
