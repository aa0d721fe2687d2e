#pragma once

#include <QString>

namespace orvanta {

/// Shows `title` and `text` as a notification of the desktop, for a user who is in another window. Never
/// blocks; does nothing if the desktop has no such service.
void notifyUser(const QString& title, const QString& text);

}  // namespace orvanta
