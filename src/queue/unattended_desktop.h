#pragma once

#include "ui/desktop.h"

namespace orvanta {

/// What a queue's steps get in place of the user: nothing is asked, and the cautious answer is given. What a
/// box would say is in the console as well.
class UnattendedDesktop : public Desktop {
 public:
  explicit UnattendedDesktop(Desktop& user) : m_user(user) {}

  QCoro::Task<BoxAnswer> showBox(MessageBox box) override {
    const bool yesNo = box.buttons == BoxButtons::YesNo;
    BoxAnswer answer = BoxAnswer::Ok;
    if (yesNo) answer = BoxAnswer::No;
    co_return answer;
  }
  QCoro::Task<QString> askSaveFile(SaveFileQuestion) override { co_return QString(); }
  QCoro::Task<QString> askFolder(QString) override { co_return QString(); }
  QCoro::Task<int> askChoice(ChoiceQuestion) override { co_return -1; }
  void Beep() override {}
  void notify(const QString&, const QString&) override {}
  bool moveToWasteBin(const QString& path) override { return m_user.moveToWasteBin(path); }
  void open(const QUrl& address) override { m_user.open(address); }
  void stopAsking() override {}

 private:
  Desktop& m_user;
};

}  // namespace orvanta
