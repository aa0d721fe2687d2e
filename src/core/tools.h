#pragma once

#include <QCoroTask>
#include <QString>
#include <QStringList>

#include "platform/host_style.h"

/// What all tool calls have in common: where the tools lie, the shape of a line and its quoting, paths, the
/// pause.
namespace orvanta {

inline constexpr QChar QuoteChar = u'"';

/// The two things that a composed line depends on besides its arguments.
struct Host {
  HostStyle style;
  /// The folder of the program's executable, in the host's own form.
  QString applicationFolder;

  /// This host as it is now; read anew for every line.
  static Host current();
};

/// The quoted path of `adb` beside the executable, with no blank behind it.
QString AdbPrefix(const Host& host);

/// The same for `aapt`.
QString AaptPrefix(const Host& host);

/// A path on the local disk as one argument of a line: in quotes, and escaped where the host's names need it.
QString quotedLocalPath(const QString& path, const HostStyle& style);

/// A path on the device as it goes into a line. It is bare, except that one with a blank or a quote, which
/// would fall apart into several arguments, is quoted.
QString devicePathArgument(const QString& path);

/// The path up to and including its last separator; empty when it has none.
QString ParentPath(const QString& path, const HostStyle& style = HostStyle::native());

/// The name behind the last separator (on Windows of either kind); a path without one comes back whole.
QString BaseName(const QString& path, const HostStyle& style = HostStyle::native());

/// Whether `sFolder` is a folder that exists; any failure gives false.
bool FolderExists(const QString& sFolder);

/// The names of the files directly in `folder`: regular files and links to them, hidden ones too, numbers
/// inside names ordered by value. Folders and what cannot be read are passed over; no folder gives no names.
QStringList filesDirectlyIn(const QString& folder);

/// Whether `text` can go into a line for the device's shell: a character that a shell would act on, a blank
/// or a line end in it, makes it unfit. An empty text is fit.
bool isFitForShell(const QString& text);

/// Whether `name` can be a package's name in a line: it comes out of a file that anybody can have made, and
/// ends up in paths. Fit for the shell, ASCII, no option, not leading out of its folder, at most 255
/// characters. An empty name is fit; no line that changes the device is composed with it.
bool isFitPackageName(const QString& name);

/// The path in the reply to `echo $EXTERNAL_STORAGE`: all of it less its line end of two characters. Empty
/// when the reply is shorter.
QString externalStorageIn(const QString& reply);

/// Whether `storage` can be a folder of the device: an absolute path that a shell takes as one word. Where a
/// tool answered with an error text or a greeting instead, it is none, and nothing must be removed below it.
bool isPlainDevicePath(const QString& storage);

/// Waits `seconds` while the program goes on answering.
QCoro::Task<> Pause(double seconds);

}  // namespace orvanta
