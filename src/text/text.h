#pragma once

#include "text/bilingual.h"
#include "text/face.h"

namespace orvanta {

/// A literal of the design. Its translations are in `translations/`.
struct Designed {
  constexpr Designed(const char16_t* text = u"") : literal(text) {}

  /// In the face that texts have now: the literal itself, or its translation.
  QString shown() const;
  /// In another one.
  QString in(Face face) const;
  constexpr bool isEmpty() const { return *literal == u'\0'; }

  const char16_t* literal;
};

/// A literal of the design in the face that texts have now, for what is shown once.
QString designed(const char16_t* literal);

/// A text that is shown for as long as its control is there, and so changes its face while it is shown.
class Text {
 public:
  Text() = default;
  Text(Designed literal) : m_designed(literal) {}
  Text(Bilingual ours) : m_ours(std::move(ours)) {}
  Text(const QString& chinese, const QString& english) : m_ours{chinese, english} {}
  Text(const QString& chinese, const QString& english, const QString& both)
      : m_ours{chinese, english, both} {}
  /// What is the same in every face: a name, a figure.
  static Text verbatim(const QString& text) { return Bilingual{text, text, text}; }

  QString shown() const { return m_designed.isEmpty() ? m_ours.shown() : m_designed.shown(); }
  bool isEmpty() const { return m_designed.isEmpty() && m_ours.shown().isEmpty(); }

 private:
  Designed m_designed;
  Bilingual m_ours;
};

}  // namespace orvanta
