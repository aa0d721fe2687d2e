#pragma once

#include <QString>
#include <optional>

namespace orvanta {

/// The languages that the program's texts can have. The texts as designed are Chinese or English, each as it
/// is.
enum class Face { AsDesigned, English, Chinese };

/// The face that texts have now.
Face face();
/// Gives all texts this face; every widget then gets `QEvent::LanguageChange`. Needs the application object.
void setFace(Face face);

/// A literal of the design in `face`: itself, or its translation.
QString translated(const char16_t* literal, Face face);

/// The name that settings and the environment have for it: "original", "en", "zh".
QString nameOf(Face face);
/// Nothing for a name that none has.
std::optional<Face> faceNamed(const QString& name);

}  // namespace orvanta
