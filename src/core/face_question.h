#pragma once

#include <QCoroTask>

#include "text/face.h"
#include "ui/form.h"

namespace orvanta {

class SettingsStore;

/// Gives texts the face for this run: that of `ORVANTA_LANGUAGE` (`original`, `en`, `zh`), else the stored
/// one, else as designed.
void takeFace(const SettingsStore& settings);
/// Gives texts `face` and stores it.
void keepFace(SettingsStore& settings, Face face);

/// The very first question: which face? Three words; as designed is preselected, and what Escape chooses.
class FaceQuestion : public Form {
  Q_OBJECT

 public:
  FaceQuestion();

  /// Whether nobody has ever chosen: there are no settings at all, and the environment asks for no face.
  static bool isDue(const SettingsStore& settings);
  /// Asks, and keeps the answer.
  QCoro::Task<> ask(SettingsStore& settings);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  Face m_chosen = Face::AsDesigned;
};

}  // namespace orvanta
