#pragma once

#include <QCoroTask>
#include <QWidget>

namespace orvanta {

/// A top-level window whose size is set and tested in twips.
///
/// `Width` is the inner width; the inner height is `Height` less the 420 twips of a caption bar. The user may
/// make a window larger than that. What he added is kept apart, so that the twips stay the values the program
/// set.
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

  /// Shows the form above all others of the program until it is hidden or closed.
  QCoro::Task<> showModal();

 Q_SIGNALS:
  /// The form went from the screen, by the program or by the user (a minimised form did not).
  void hidden();
  /// The user closed the form by its window's own means; `hidden` follows.
  void closedByUser();

 protected:
  void hideEvent(QHideEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void apply(QSize room);

  int m_widthTwips;
  int m_heightTwips;
};

}  // namespace orvanta
