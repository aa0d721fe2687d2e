#pragma once

#include "ui/desktop.h"

class QWidget;

namespace orvanta {

/// The real desktop.
class QtDesktop : public Desktop {
 public:
  QCoro::Task<BoxAnswer> showBox(MessageBox box) override;
  QCoro::Task<QString> askSaveFile(SaveFileQuestion question) override;
  QCoro::Task<QString> askFolder(QString title) override;
  void Beep() override;
  void open(const QUrl& address) override;
};

}  // namespace orvanta
