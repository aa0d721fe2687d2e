#pragma once

#include <QString>
#include <QStringList>

namespace orvanta {

/// The words of one command line, by the rules of the Windows C runtime, so that a line means the same on
/// every system. Blanks and tabs separate; double quotes group. In the first word, the program, a quote only
/// toggles the grouping and a backslash is an ordinary character. Behind it 2n backslashes before a quote are
/// n backslashes, 2n+1 are n and a literal quote, and two quotes inside a group are one literal quote. Blanks
/// in front of the program are passed over. An empty or blank line has no words.
QStringList splitCommandLine(const QString& line);

/// `text` as one word behind the program: in double quotes always, with a backslash before each quote of its
/// own and doubled backslashes before a quote and at the end. splitCommandLine() gives back exactly `text`.
QString quotedArgument(const QString& text);

}  // namespace orvanta
