#include "text/face.h"

#include <QCoreApplication>
#include <QTranslator>
#include <array>
#include <memory>

using namespace Qt::StringLiterals;

// Outside of any namespace, as the toolkit asks; without it the linker would drop the translations.
static void loadTranslations() {
  Q_INIT_RESOURCE(translations);
}

namespace orvanta {

namespace {

Face present = Face::AsDesigned;

struct Catalogue {
  Face face;
  const char16_t* file;
};

// The last is the toolkit's own, for its dialogs. It may be missing; they are English then.
constexpr std::array catalogues = {Catalogue{Face::English, u":/translations/orvanta_en.qm"},
                                   Catalogue{Face::Chinese, u":/translations/orvanta_zh_CN.qm"},
                                   Catalogue{Face::Chinese, u":/translations/qtbase_zh_CN.qm"}};

}  // namespace

Face face() {
  return present;
}

void setFace(Face face) {
  loadTranslations();
  present = face;
  for (QTranslator* translator : qApp->findChildren<QTranslator*>(u"face"_s)) delete translator;
  for (const Catalogue& catalogue : catalogues) {
    if (catalogue.face != face) continue;
    auto* translator = new QTranslator(qApp);
    translator->setObjectName(u"face"_s);
    if (translator->load(QString::fromUtf16(catalogue.file))) QCoreApplication::installTranslator(translator);
  }
}

QString translated(const char16_t* literal, Face face) {
  const QString text = QString::fromUtf16(literal);
  if (face == Face::AsDesigned) return text;
  static const auto ours = [] {
    loadTranslations();
    std::array<std::unique_ptr<QTranslator>, 2> loaded;
    for (size_t i = 0; i < loaded.size(); ++i) {
      loaded[i] = std::make_unique<QTranslator>();
      if (!loaded[i]->load(QString::fromUtf16(catalogues[i].file))) qWarning("a translation is missing");
    }
    return loaded;
  }();
  const QString found = ours[face == Face::English ? 0 : 1]->translate("design", text.toUtf8().constData());
  return found.isEmpty() ? text : found;
}

QString nameOf(Face face) {
  switch (face) {
    case Face::AsDesigned:
      break;
    case Face::English:
      return u"en"_s;
    case Face::Chinese:
      return u"zh"_s;
  }
  return u"original"_s;
}

std::optional<Face> faceNamed(const QString& name) {
  for (const Face face : {Face::AsDesigned, Face::English, Face::Chinese}) {
    if (nameOf(face) == name) return face;
  }
  return std::nullopt;
}

}  // namespace orvanta
