#pragma once

#include <QByteArray>
#include <QList>

namespace orvanta::fuzz {

/// A reader of text that comes from outside.
struct Reader {
  const char* name;
  /// Reads any bytes, and aborts if what comes out contradicts itself.
  void (*read)(const QByteArray& bytes);
  /// Real text that gets far into it.
  QByteArray seed;
};

/// All of them.
const QList<Reader>& readers();

}  // namespace orvanta::fuzz
