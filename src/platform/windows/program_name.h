#pragma once

#include <QString>

namespace orvanta {

/// The text after the program's name in `line`, with blanks and quotes but without leading blanks. `program`
/// is the program's own path: the file manager's entry starts it without quotes, so a line that begins with
/// that path has its name end there, not at the first blank outside quotes.
QString textBehindProgram(const QString& line, const QString& program);

}  // namespace orvanta
