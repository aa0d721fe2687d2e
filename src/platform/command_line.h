#pragma once

#include <QString>
#include <QStringList>

namespace orvanta {

/// The words of one command line, by the rules of the Windows C runtime, so that a line means the same on
/// every system. Blanks and tabs separate; double quotes group. In the first word, the program, a quote only
/// toggles the grouping and a backslash is an ordinary character. After it 2n backslashes before a quote are
/// n backslashes, 2n+1 are n and a literal quote, and two quotes inside a group are one literal quote. Blanks
/// before the program are skipped. An empty or blank line has no words.
QStringList splitCommandLine(const QString& line);

/// `text` as one word after the program: always in double quotes, with a backslash before each quote in it,
/// and with backslashes doubled before a quote and at the end. splitCommandLine() gives back exactly `text`.
QString quotedArgument(const QString& text);

}  // namespace orvanta
