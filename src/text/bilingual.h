#pragma once

#include <QString>

namespace orvanta {

/// One text of ours for users, in both of the program's languages.
struct Bilingual {
  QString chinese;
  QString english;
  /// What the texts as designed have beside them; if empty, Chinese with English in brackets.
  QString both = {};

  /// All with `value` in the place of "%1".
  Bilingual with(const QString& value) const {
    const auto filled = [&value](QString text) { return text.replace(QStringLiteral("%1"), value); };
    return {filled(chinese), filled(english), filled(both)};
  }

  /// In the face that texts have now; empty if there is no text.
  QString shown() const;

  bool operator==(const Bilingual&) const = default;
};

/// A text of ours in the face that texts have now, for what is shown once: a line of the console, a box.
QString inFace(const QString& chinese, const QString& english);
/// The same with a form of its own beside the texts as designed, where brackets would not do.
QString inFace(const QString& chinese, const QString& english, const QString& both);

}  // namespace orvanta
