#pragma once

#include <QString>
#include <QStringList>

namespace orvanta {

/// The raw text after the program's name on the command line; may be empty. On POSIX, where only separate
/// arguments arrive, they are joined by one blank and otherwise unchanged.
QString commandText(int argc, const char* const* argv);

/// The same as separate words, by the rules of the system.
QStringList commandWords(int argc, const char* const* argv);

/// Starts this program a second time, which goes on without this one, with `text` as its command text. False
/// when the system did not start it.
bool startAgain(const QString& text);

}  // namespace orvanta
