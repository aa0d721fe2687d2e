#pragma once

#include <QString>

#include "platform/host_style.h"

/// What all command lines share: where the tools are, and how a path is quoted.
namespace orvanta {

inline constexpr QChar QuoteChar = u'"';

/// What a composed line depends on besides its arguments.
struct Host {
  HostStyle style;
  /// The folder of the program's executable, in the host's own form.
  QString applicationFolder;

  /// This host as it is now; read again for every line.
  static Host current();
};

/// The quoted path of `adb` beside the executable, with no blank after it.
QString AdbPrefix(const Host& host);

/// The same for `aapt`.
QString AaptPrefix(const Host& host);

/// A path on the local disk as one argument of a line: quoted, and escaped where the host's names need it.
QString quotedLocalPath(const QString& path, const HostStyle& style);

/// A local folder as the target of a pull. A Windows drive's root ends in the separator, which would turn the
/// closing quote into an ordinary character.
QString quotedLocalFolder(const QString& path, const HostStyle& style);

/// A path on the device as an argument of a line: bare, or quoted where a blank or a quote would split it.
QString devicePathArgument(const QString& path);

/// `text` as one word for a POSIX shell, whatever it contains.
QString shellWord(const QString& text);

}  // namespace orvanta
