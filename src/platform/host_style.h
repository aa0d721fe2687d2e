#pragma once

#include <QChar>
#include <QString>

namespace orvanta {

/// What differs between desktops in a composed line. Both styles exist on every host, so that the exact lines
/// of either can be composed and tested anywhere.
struct HostStyle {
  QChar separator;
  QString executableSuffix;
  /// Whether file names can hold quotes and backslashes, which a command line then has to escape.
  bool namesNeedEscapes;

  static const HostStyle& posix();
  static const HostStyle& windows();
  /// The style of the host that the program was built for.
  static const HostStyle& native();
};

}  // namespace orvanta
