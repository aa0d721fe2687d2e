#include "core/face_question.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScreen>

#include "core/settings_store.h"
#include "ui/controls.h"
#include "ui/face_switch.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int widthTwips = 6300;
constexpr int heightTwips = 1500;
const QString section = u"Language"_s;

std::optional<Face> faceOfEnvironment() {
  return faceNamed(qEnvironmentVariable("ORVANTA_LANGUAGE"));
}

}  // namespace

void takeFace(const SettingsStore& settings) {
  const auto stored = faceNamed(settings.read(section, QString()));
  setFace(faceOfEnvironment().value_or(stored.value_or(Face::AsDesigned)));
}

void keepFace(SettingsStore& settings, Face face) {
  settings.write(section, nameOf(face));
  setFace(face);
}

FaceQuestion::FaceQuestion() : Form(u"faceQuestion"_s, widthTwips, heightTwips) {
  setTitle(Text::verbatim(u"Orvanta"_s));
  auto* row = new QHBoxLayout(this);
  for (const Face offered : {Face::AsDesigned, Face::English, Face::Chinese}) {
    auto* button =
        new Button(orvanta::nameOf(offered), Text::verbatim(FaceSwitch::nameOf(offered)), {}, this);
    button->setAutoDefault(true);
    button->setMinimumHeight(32);
    row->addWidget(button);
    connect(button, &QPushButton::clicked, this, [this, offered] {
      m_chosen = offered;
      hide();
    });
    if (offered == Face::AsDesigned) {
      button->setDefault(true);
      button->setFocus();
    }
  }
}

bool FaceQuestion::isDue(const SettingsStore& settings) {
  return settings.isEmpty() && !faceOfEnvironment();
}

QCoro::Task<> FaceQuestion::ask(SettingsStore& settings) {
  centreOnScreen(*screen());
  const bool lives = co_await showModal();
  if (lives) keepFace(settings, m_chosen);
}

void FaceQuestion::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) close();
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) return;
  if (auto* button = qobject_cast<QPushButton*>(focusWidget())) button->click();
}

}  // namespace orvanta
