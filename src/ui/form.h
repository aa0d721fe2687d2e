#pragma once

#include <QCoroTask>
#include <QWidget>

#include "text/text.h"

class QScreen;

namespace orvanta {

/// A top-level window whose size is set and tested in twips.
///
/// `Width` is the inner width; the inner height is `Height` less the 420 twips of a caption bar. The user may
/// make a window larger than that. What the user adds is kept separately, so that the twips stay the values
/// the program set.
///
/// A form that belongs to another, or that is modal, comes up in the middle of its owner, or of the screen
/// while that is hidden; any other form comes back to where it was.
///
/// When texts get another face, the form is laid out anew, since their widths differ.
///
/// When the focused control is disabled or hidden, the focus goes to the refuge, not to a neighbour, for
/// which the next press of the space bar was never meant.
class Form : public QWidget {
  Q_OBJECT

 public:
  /// A hidden form. `designName` becomes the object name. `owner` keeps the form above it and may be null.
  Form(const QString& designName, int widthTwips, int heightTwips, QWidget* owner = nullptr);

  int Width() const { return m_widthTwips; }
  int Height() const { return m_heightTwips; }
  void setWidth(int twips);
  void setHeight(int twips);

  /// The inner size that the twips ask for, in pixels.
  QSize designSize() const;
  /// What the user added to it, in pixels.
  QSize userRoom() const;

  /// The window's title.
  void setTitle(const Text& title);

  /// Moves a hidden form without an owner to where it is to come up: the middle of `screen`.
  void centreOnScreen(const QScreen& screen);

  /// Shows the form above all others of the program until it is hidden or closed. False if it was deleted
  /// instead: the caller must then not touch its owner either.
  QCoro::Task<bool> showModal();

 Q_SIGNALS:
  /// The program or the user took the form off the screen (minimising does not count).
  void hidden();
  /// The user closed the form with its window's own controls; `hidden` follows.
  void closedByUser();

 protected:
  /// Gets the focus of a control that is disabled or hidden: a control that no key triggers. By default the
  /// form itself.
  void setFocusRefuge(QWidget* refuge) { m_refuge = refuge; }

  bool event(QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void apply(QSize room);
  void layOutAnew();
  QPoint placeOverOwner() const;

  int m_widthTwips;
  int m_heightTwips;
  bool m_wasShown = false;
  QWidget* m_refuge = this;
};

}  // namespace orvanta
