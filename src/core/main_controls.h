#pragma once

#include <QLineEdit>
#include <QTimer>
#include <array>

#include "core/console.h"
#include "ui/busy_strip.h"
#include "ui/controls.h"
#include "ui/face_switch.h"
#include "ui/form.h"
#include "ui/picture_box.h"
#include "ui/save_button.h"
#include "ui/status_line.h"

namespace orvanta {

inline constexpr int closedWidth = 8625;   ///< Width in twips with the device panel out of view.
inline constexpr int openWidth = 14865;    ///< Width in twips with the device panel in view.
inline constexpr int closedHeight = 7260;  ///< Height in twips with the adb row out of view.
inline constexpr int openHeight = 7770;    ///< Height in twips with the adb row in view.

/// The controls of the main window. Each feature connects itself to its own.
struct MainControls {
  Frame* Frame1 = nullptr;  ///< application label
  Label* Label1 = nullptr;
  Frame* Frame2 = nullptr;  ///< package name
  Label* Label2 = nullptr;
  Frame* Frame3 = nullptr;  ///< version name
  Label* Label3 = nullptr;
  Frame* Frame4 = nullptr;  ///< build number of the file
  Label* Label4 = nullptr;
  Frame* Frame5 = nullptr;  ///< file name, or the start prompt
  Label* Label5 = nullptr;
  Frame* Frame6 = nullptr;  ///< build on the device
  Label* Label6 = nullptr;
  Frame* Frame7 = nullptr;  ///< disk size
  Label* Label7 = nullptr;
  Frame* Frame8 = nullptr;  ///< used space
  Label* Label8 = nullptr;
  Frame* Frame9 = nullptr;  ///< free space
  Label* Label9 = nullptr;
  Frame* Frame10 = nullptr;  ///< percent used
  Label* Label10 = nullptr;

  PictureBox* Picture1 = nullptr;          ///< the package's icon
  PictureBox* banner = nullptr;            ///< takes the pointer for all 23 frames
  std::array<PictureBox*, 23> Picture2{};  ///< the frames of the site banner

  Button* Command1 = nullptr;   ///< install
  CheckBox* Check1 = nullptr;   ///< grant all listed permissions on install
  Button* Command2 = nullptr;   ///< show the permissions
  Button* Command3 = nullptr;   ///< no action; below the window's edge
  Button* Command4 = nullptr;   ///< uninstall
  Button* Command5 = nullptr;   ///< uninstall, keep data
  Button* Command6 = nullptr;   ///< opens and closes the adb row
  Button* Command8 = nullptr;   ///< help picture
  Button* Command9 = nullptr;   ///< installed apps
  Button* Command10 = nullptr;  ///< no action; below the window's edge
  Button* Command11 = nullptr;  ///< opens and closes the device panel
  Button* Command12 = nullptr;  ///< headset as a drive
  CheckBox* Check2 = nullptr;   ///< stop the adb server on exit

  Console* txtOutputs = nullptr;     ///< the console
  StatusLine* statusLine = nullptr;  ///< where the user stands
  BusyStrip* busyStrip = nullptr;    ///< the running tool, with Stop; in the line's place
  SaveButton* saveReport = nullptr;  ///< saves console and state as a report; beside the line
  FaceSwitch* faceSwitch = nullptr;  ///< the language of the texts; beside the line

  QLineEdit* Text1 = nullptr;  ///< arguments of a free adb command
  Button* Command7 = nullptr;  ///< runs them

  QWidget* panelRoom = nullptr;  ///< the place of the device panel; in view at `openWidth`

  QTimer* Timer1 = nullptr;  ///< moves the console to its end after start-up
  QTimer* Timer2 = nullptr;  ///< plays the banner
  QTimer* Timer3 = nullptr;  ///< device watcher

  /// Makes all controls as children of `form`, in tab order.
  void createControls(Form* form);
  /// Places every control for the form's present size. Only the twips decide whether panel and adb row are in
  /// view.
  void arrange(const Form& form);

 private:
  void createFields(Form* form);
  void createCommands(Form* form);
};

}  // namespace orvanta
