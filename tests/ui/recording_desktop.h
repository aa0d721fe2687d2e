#pragma once

#include <QFile>
#include <QFileInfo>
#include <QList>

#include "ui/desktop.h"

namespace orvanta {

/// A desktop that answers from a list and records what was asked.
class RecordingDesktop : public Desktop {
 public:
  QList<MessageBox> boxes;   ///< every box that was shown
  QList<BoxAnswer> answers;  ///< what the next boxes are answered; then OK or Yes
  QList<SaveFileQuestion> saveQuestions;
  QList<QString> savePaths;  ///< what the next save dialogs give; then cancelled
  QList<QString> folderQuestions;
  QList<QString> folders;  ///< what the next folder dialogs give; then cancelled
  QList<ChoiceQuestion> choiceQuestions;
  QList<int> choices;  ///< what the next ones give; then cancelled
  QList<QUrl> opened;
  QStringList notifications;
  QString wasteBin;  ///< the folder of the waste bin; empty: there is none
  int beeps = 0;
  bool asks = true;

  QStringList boxTexts() const {
    QStringList texts;
    for (const MessageBox& box : boxes) texts << box.text;
    return texts;
  }

  QCoro::Task<BoxAnswer> showBox(MessageBox box) override {
    boxes << box;
    const BoxAnswer unasked = box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Yes;
    co_return answers.isEmpty() ? unasked : answers.takeFirst();
  }
  QCoro::Task<QString> askSaveFile(SaveFileQuestion question) override {
    saveQuestions << question;
    co_return savePaths.isEmpty() ? QString() : savePaths.takeFirst();
  }
  QCoro::Task<QString> askFolder(QString title) override {
    folderQuestions << title;
    co_return folders.isEmpty() ? QString() : folders.takeFirst();
  }
  QCoro::Task<int> askChoice(ChoiceQuestion question) override {
    choiceQuestions << question;
    co_return choices.isEmpty() ? -1 : choices.takeFirst();
  }
  void Beep() override { ++beeps; }
  void notify(const QString&, const QString& text) override { notifications << text; }
  bool moveToWasteBin(const QString& path) override {
    return !wasteBin.isEmpty() && QFile::rename(path, wasteBin + u'/' + QFileInfo(path).fileName());
  }
  void open(const QUrl& address) override { opened << address; }
  void stopAsking() override { asks = false; }
};

}  // namespace orvanta
