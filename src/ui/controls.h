#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include "text/text.h"
#include "ui/color.h"

namespace orvanta {

/// A captioned surround for one field or a row of controls: a fine rounded line, the caption small above the
/// content.
class Frame : public QGroupBox {
  Q_OBJECT

 public:
  Frame(const QString& designName, const Text& caption, QWidget* parent);

  QString Caption() const { return title(); }

  /// The room below the caption, in pixels.
  QRect contentArea() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// A label whose tool-tip is shown as plain text, whatever it looks like.
class TextLabel : public QLabel {
  Q_OBJECT

 public:
  using QLabel::QLabel;

 protected:
  bool event(QEvent* event) override;
};

/// One line of text, shortened in the middle if it does not fit, with its own background and text colour.
class Label : public TextLabel {
  Q_OBJECT

 public:
  Label(const QString& designName, QWidget* parent);

  QString Caption() const { return text(); }
  void setCaption(const QString& caption) { setText(caption); }

  FormColor BackColor() const { return m_backColor; }
  FormColor ForeColor() const { return m_foreColor; }
  void setBackColor(FormColor color);
  void setForeColor(FormColor color);

  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  FormColor m_backColor = systemButtonFace;
  FormColor m_foreColor = systemButtonText;
};

/// A push button that can have a colour.
class Button : public QPushButton {
  Q_OBJECT

 public:
  /// `accessibleName` is for buttons whose caption says too little; otherwise the caption is spoken.
  Button(const QString& designName, const Text& caption, const Text& toolTip, QWidget* parent,
         const Text& accessibleName = {});

  FormColor BackColor() const { return m_backColor; }
  void setBackColor(FormColor color);
  /// Marks it as the action that its window is for.
  void setFirstAction();

 private:
  FormColor m_backColor = systemButtonFace;
};

/// A check box with the values 0 and 1.
class CheckBox : public QCheckBox {
  Q_OBJECT

 public:
  CheckBox(const QString& designName, const Text& caption, const Text& toolTip, QWidget* parent);

  int Value() const { return isChecked() ? 1 : 0; }
  void setValue(int value) { setChecked(value == 1); }
};

}  // namespace orvanta
