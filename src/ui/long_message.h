#pragma once

#include <QDialog>
#include <QPlainTextEdit>
#include <QPushButton>

#include "ui/desktop.h"

namespace orvanta {

/// A message box that shows a dozen lines until the user unfolds it, and then at most the height of the
/// screen; the rest scrolls. Lines break anywhere, so that a long path does not widen it. The toolkit's own
/// box grows with its text beyond any screen. Its result is the button's QMessageBox value.
class LongMessage : public QDialog {
  Q_OBJECT

 public:
  LongMessage(const MessageBox& box, const QString& text, const QIcon& icon, QWidget* parent);

  /// Whether `text` has more than a dozen lines, or a word that is wider than a line, in the font of
  /// `widget`.
  static bool isNeededFor(const QString& text, const QFont& font);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  int textHeight(int mostLines, int mostHeight) const;
  void fold(bool folded);

  QPlainTextEdit* m_text;
  QPushButton* m_more;
};

}  // namespace orvanta
