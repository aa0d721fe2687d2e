#pragma once

#include <QSettings>
#include <QString>

namespace orvanta {

/// The four on-or-off choices that outlive the program, in the platform's per-user store. A choice is a
/// section of its own (`Grant`, `Kill`, `tooltip`, `Explentry`) with the key "Value". Written through at
/// once; two processes share the store, and the last write wins.
class SettingsStore {
 public:
  SettingsStore();

  /// The text under `section`, or `defaultText` if there is none.
  QString read(const QString& section, const QString& defaultText) const;
  /// Whether nothing was ever stored.
  bool isEmpty() const { return m_settings.allKeys().isEmpty(); }
  /// Returns whether it was stored.
  bool write(const QString& section, const QString& value);

 private:
  mutable QSettings m_settings;
};

}  // namespace orvanta
