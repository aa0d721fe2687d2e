#pragma once

#include "core/settings_store.h"
#include "ui/controls.h"
#include "ui/form.h"

namespace orvanta {

/// The window "Tip", shown at each start without a package until the user turns it off: explains what such a
/// start is for.
class Form7 : public Form {
  Q_OBJECT

 public:
  explicit Form7(SettingsStore& settings, QWidget* owner = nullptr);

  QLabel* Label1;    ///< the tip
  CheckBox* Check1;  ///< do not show again
  Button* Command1;  ///< closes the window

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Form_Load();
  void Command1_Click();

  SettingsStore& m_settings;
};

}  // namespace orvanta
