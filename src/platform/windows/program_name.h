#pragma once

#include <QString>

namespace orvanta {

/// What stands behind the program's name in `line`, blanks and quotes and all, but for the blanks in front.
/// `program` is the program's own path: an entry of the file manager starts it without quotes, so that the
/// name ends at the first blank outside quotes only where the line does not begin with that path.
QString textBehindProgram(const QString& line, const QString& program);

}  // namespace orvanta
