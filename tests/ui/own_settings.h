#pragma once

#include <QString>

namespace orvanta {

/// The settings of a new user while this object lives; on Windows also the file manager's classes. The real
/// user's settings are not touched.
class OwnSettings {
 public:
  /// The caller removes `folder`.
  explicit OwnSettings(const QString& folder);
  ~OwnSettings();
  Q_DISABLE_COPY_MOVE(OwnSettings)
};

}  // namespace orvanta
