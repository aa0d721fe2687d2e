#pragma once

#include <QLabel>

#include "ui/controls.h"
#include "ui/form.h"

namespace orvanta {

class State;

/// The window "Permissions in Manifest": what the loaded package file declares. A click on the list, Escape
/// or Enter hides it. It has no scroll bar; a longer list is cut off until the user enlarges the window.
class Form1 : public Form {
  Q_OBJECT

 public:
  Form1(const State& state, QWidget* owner);

  Frame* Permissions;  ///< surrounds the list
  QLabel* Label1;      ///< the list

  /// The list as it was set, each entry followed by a carriage return.
  QString Caption() const { return m_caption; }

  /// Lists the permissions again and shows the window; the main window stays usable.
  void Command2_Click();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void setCaption(const QString& caption);
  void Label1_Click();

  const State& m_state;
  QString m_caption;
};

}  // namespace orvanta
