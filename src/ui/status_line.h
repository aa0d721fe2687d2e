#pragma once

#include <QWidget>
#include <optional>

#include "ui/controls.h"
#include "ui/status.h"

namespace orvanta {

/// A row that shows a status: sign, sentence, at most one button. A second, shorter text beside the sentence
/// tells about trouble since then. A sentence that does not fit has a line for each language; what does not
/// fit then is shortened. The tool-tip has all of it, and so has a button where the status has none of its
/// own. Screen readers are told about every change.
class StatusLine : public QWidget {
  Q_OBJECT

 public:
  explicit StatusLine(QWidget* parent);

  /// The button is that of `status`, or of `trouble` where `status` has none.
  void tell(const Status& status, const std::optional<Status>& trouble = {});

  /// Shows this instead, until it is empty or there is news.
  void showHint(const QString& hint);

  /// The line's whole text, unshortened.
  QString text() const { return accessibleName(); }

 Q_SIGNALS:
  /// The user wants to read all of it.
  void wholeTextWanted(const QString& text);

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString buttonCaption() const;
  bool hasMore() const;
  void showButton();
  void layOut();

  Status m_status;
  std::optional<Status> m_trouble;
  QString m_hint;
  Button* m_button;
};

}  // namespace orvanta
