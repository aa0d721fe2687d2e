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
  QCoro::Task<int> askChoice(ChoiceQuestion question) override;
  void Beep() override;
  void notify(const QString& title, const QString& text) override;
  bool moveToWasteBin(const QString& path) override;
  void open(const QUrl& address) override;
  void stopAsking() override;

 private:
  bool m_asks = true;
  QString m_lastFolder;  // in which a folder was last chosen
};

}  // namespace orvanta
