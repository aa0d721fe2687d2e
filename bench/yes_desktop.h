#pragma once

#include "ui/desktop.h"

namespace orvanta {

/// A user who says yes.
struct YesDesktop : Desktop {
  QCoro::Task<BoxAnswer> showBox(MessageBox) override { co_return BoxAnswer::Yes; }
  QCoro::Task<QString> askSaveFile(SaveFileQuestion) override { co_return QString(); }
  QCoro::Task<QString> askFolder(QString) override { co_return QString(); }
  QCoro::Task<int> askChoice(ChoiceQuestion) override { co_return -1; }
  void Beep() override {}
  void notify(const QString&, const QString&) override {}
  bool moveToWasteBin(const QString&) override { return false; }
  void open(const QUrl&) override {}
  void stopAsking() override {}
};

}  // namespace orvanta
