#pragma once

#include <QDir>
#include <QUuid>

namespace orvanta {

/// `begin` with a random ending. The journal has to name a thing before it is made, so the system's own calls
/// for temporary names do not fit.
inline QString freshName(const QString& begin) {
  return begin + QUuid::createUuid().toString(QUuid::Id128);
}

/// Makes the folder, which must not exist yet, for the user alone.
inline bool makePrivateFolder(const QString& path) {
  return QDir().mkdir(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

}  // namespace orvanta
