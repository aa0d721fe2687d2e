#pragma once

#include <QString>
#include <optional>

#include "text/bilingual.h"

namespace orvanta {

/// What the headset's package manager was asked to do; each has its own numbers.
enum class PackageWork { Install, Uninstall };

/// A code with which Android's package manager refuses, for somebody who is not a developer.
struct FailureCode {
  QString name;       ///< INSTALL_FAILED_VERSION_DOWNGRADE
  Bilingual meaning;  ///< what is wrong and what to do
};

/// What `code` means; nothing for an unknown one. `code` is a name or a number ("-25"): Android prints the
/// number where its own table lacks the name.
std::optional<FailureCode> failureCode(const QString& code, PackageWork work);

}  // namespace orvanta
