#pragma once

#include <QByteArrayList>
#include <QMap>
#include <QString>

namespace orvanta::headset {

/// The headset's own file tree and the way into it: a busybox shell that sees nothing of the desktop.
class Sandbox {
 public:
  /// `stateDir` holds the tree in its folder "root" and the socket of the device's own commands in "run".
  explicit Sandbox(const QString& stateDir);

  /// Creates what is missing of the tree (what is there stays) and runs a first command in it.
  /// On failure the reason, for the user; empty when all is well.
  QString prepare(const QString& toolPath);

  QString root() const { return m_root; }
  QString runDir() const { return m_run; }

  /// The full command line that runs `script` in the headset's shell; empty: an interactive shell.
  /// `terminal` is the TERM of the desktop's terminal.
  QByteArrayList command(const QByteArray& script, const QByteArray& terminal = "dumb") const;

 private:
  QString makeTree(const QString& toolPath) const;
  QString tryOut();
  /// The part of the command line that lets pushed programs for other processors run: a script that starts
  /// the emulator covers each. Doing it in the kernel would need root and a setting for the whole machine.
  QByteArrayList emulation() const;

  QString m_root;
  QString m_run;
  QString m_emulation;
  QString m_bwrap;
  QMap<int, QString> m_emulators;
  QByteArrayList m_isolation;
};

}  // namespace orvanta::headset
