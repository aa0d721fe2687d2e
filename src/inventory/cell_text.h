#pragma once

#include <QString>

namespace orvanta {

/// `S1` without the control characters and blanks that tools and their line ends leave in it, inside it too.
QString CTrim(const QString& S1);

/// The tenths in a size of one decimal, such as 123 for "12.3" and a return; 0 where it is none.
qint64 tenthsIn(QStringView size);

/// "12.3" for 123.
QString tenthsText(qint64 tenths);

}  // namespace orvanta
