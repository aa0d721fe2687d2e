#pragma once

#include <QString>

namespace orvanta {

/// A folder that can take the package's icon for the moment between its extraction and its drawing: on POSIX
/// a fresh one in the user's cache that nobody else can enter, on Windows the program's own, in which
/// somebody else's files may lie. Without a separator at its end; empty when there is none.
QString makeIconFolder();

/// Done with what makeIconFolder() gave: a fresh folder goes again, if it is empty.
void leaveIconFolder(const QString& folder);

}  // namespace orvanta
