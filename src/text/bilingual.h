#pragma once

#include <QString>

namespace orvanta {

/// One text for users in both of the program's languages.
struct Bilingual {
  QString chinese;
  QString english;

  /// Both with `value` in the place of "%1".
  Bilingual with(const QString& value) const {
    const auto filled = [&value](QString text) { return text.replace(QStringLiteral("%1"), value); };
    return {filled(chinese), filled(english)};
  }

  /// Chinese, with English in brackets; empty when there is no text.
  QString joined() const {
    return chinese.isEmpty() ? english : QStringLiteral("%1 (%2)").arg(chinese, english);
  }

  bool operator==(const Bilingual&) const = default;
};

}  // namespace orvanta
