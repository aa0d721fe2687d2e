#pragma once

#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>

namespace orvanta {

/// The toolkit's file dialog takes a quote for the beginning of a list of names; here it is an ordinary
/// character. If the desktop shows its own dialog, its answer counts.
class FileDialog : public QFileDialog {
  Q_OBJECT

 public:
  using QFileDialog::QFileDialog;

  /// The chosen path with the host's separators; empty when the dialog was cancelled.
  QString chosen() const;

  void accept() override;

 protected:
  void showEvent(QShowEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QString typed() const;
  void keepEnabled();

  QLineEdit* m_field = nullptr;     // for the name; null in the desktop's own dialog
  QPushButton* m_accept = nullptr;  // beside it
  QString m_typed;
};

}  // namespace orvanta
