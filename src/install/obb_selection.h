#pragma once

#include <array>

#include "core/state.h"
#include "ui/controls.h"
#include "ui/form.h"
#include "ui/toggle_button.h"

class QTimer;

namespace orvanta {

/// The window "Found OBB Files (Click to Skip)": which expansion files the install found; a click on a row
/// skips it.
///
/// A new object is the loaded form; `Form_Load` fills it once. Its button only hides it, so that the marks
/// stay readable. The close box skips all files; Escape and `cmdCancel` end the installation.
class Form3 : public Form {
  Q_OBJECT

 public:
  static constexpr int shownRows = 17;  ///< entries with a row; further ones cannot be skipped

  /// `apkFileName` goes into the heading; `module` has the list and receives the confirmation.
  Form3(const QString& apkFileName, ExpansionFileList& module, QWidget* owner);

  std::array<Frame*, 18> Frame1{};         ///< one per row
  std::array<Label*, 18> Label1{};         ///< the row's file name
  std::array<ToggleButton*, 18> Check1{};  ///< 0 install, 1 skip
  Frame* Frame1_18;                        ///< heading
  Label* Label1_18;                        ///< name of the package file
  Label* Label2;                           ///< heading over the toggles
  Button* cmdCancel;                       ///< ends the installation before anything is sent
  Button* Command1;                        ///< confirms

 Q_SIGNALS:
  /// Nothing is to be installed; `hidden` follows.
  void cancelled();

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Form_Load(const QString& apkFileName);
  void Check1_Click(int Index);
  void Command1_Click();
  void cancel();
  void Timer1_Timer();

  ExpansionFileList& m_module;
  QTimer* m_Timer1;
};

}  // namespace orvanta
