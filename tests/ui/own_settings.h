#pragma once

#include <QString>

namespace orvanta {

/// The store of the user's choices as a new user finds it, for as long as this object lives; on Windows also
/// the classes that the file manager goes by. Nothing reaches what the user of this machine has there.
class OwnSettings {
 public:
  /// `folder` goes away by itself.
  explicit OwnSettings(const QString& folder);
  ~OwnSettings();
  Q_DISABLE_COPY_MOVE(OwnSettings)
};

}  // namespace orvanta
