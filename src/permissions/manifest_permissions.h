#pragma once

#include <QLabel>

#include "ui/controls.h"
#include "ui/form.h"

namespace orvanta {

class apkinfo;

/// The window "Permissions in Manifest": what the loaded package file declares. A click on the list, Escape
/// or Enter hides it. It has no scroll bar; a list that is longer than the window shows is cut off, and shows
/// more when the user makes the window larger.
class Form1 : public Form {
  Q_OBJECT

 public:
  explicit Form1(apkinfo& owner);

  Frame* Permissions;  ///< surrounds the list
  QLabel* Label1;      ///< the list

  /// The list as it was set, a carriage return behind each entry.
  QString Caption() const { return m_caption; }

  /// Lists the permissions anew and shows the window; the main window stays usable beside it.
  void Command2_Click();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void setCaption(const QString& caption);
  void Label1_Click();

  apkinfo& m_apkinfo;
  QString m_caption;
};

}  // namespace orvanta
