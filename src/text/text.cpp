#include "text/text.h"

#include "text/face.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString Bilingual::shown() const {
  switch (face()) {
    case Face::English:
      return english;
    case Face::Chinese:
      return chinese;
    case Face::AsDesigned:
      break;
  }
  if (!both.isEmpty()) return both;
  return chinese.isEmpty() ? english : u"%1 (%2)"_s.arg(chinese, english);
}

QString inFace(const QString& chinese, const QString& english) {
  return Bilingual{chinese, english}.shown();
}

QString inFace(const QString& chinese, const QString& english, const QString& both) {
  return Bilingual{chinese, english, both}.shown();
}

QString Designed::shown() const {
  return translated(literal, face());
}

QString Designed::in(Face face) const {
  return translated(literal, face);
}

QString designed(const char16_t* literal) {
  return Designed(literal).shown();
}

}  // namespace orvanta
