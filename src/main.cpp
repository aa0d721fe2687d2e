#include <QApplication>
#include <QIcon>

#include "app/application.h"
#include "core/face_question.h"
#include "platform/command_text.h"
#include "ui/qt_desktop.h"
#include "ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

/// Starts the program, on the very first start after the question for its face. A start with a package never
/// asks.
QCoro::Task<> start(orvanta::Application& program, QString commandText, QStringList commandWords) {
  orvanta::SettingsStore settings;
  orvanta::takeFace(settings);
  if (commandText.isEmpty() && orvanta::FaceQuestion::isDue(settings)) {
    orvanta::FaceQuestion question;
    co_await question.ask(settings);
  }
  program.start(commandText, commandWords);
}

}  // namespace

int main(int argc, char** argv) {
  const QString commandText = orvanta::commandText(argc, argv);
  const QStringList commandWords = orvanta::commandWords(argc, argv);
  // Everything after the program's name is one path, or several; no part of it is an option, ours or the
  // toolkit's.
  int toolkitWords = 1;
  QApplication application(toolkitWords, argv);
  QApplication::setApplicationName(u"Orvanta"_s);
  QApplication::setApplicationVersion(QStringLiteral(ORVANTA_VERSION));
  QApplication::setDesktopFileName(u"example.orvanta.Orvanta"_s);
  QApplication::setQuitOnLastWindowClosed(false);
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
    icon.addFile(u":/icon/orvanta_%1.png"_s.arg(size), QSize(size, size));
  }
  QApplication::setWindowIcon(icon);
  orvanta::theme::apply(application);

  orvanta::QtDesktop desktop;
  orvanta::Application orvanta(desktop, [] { QCoreApplication::exit(0); });
  orvanta.endWithTheSession();
  start(orvanta, commandText, commandWords);
  return QApplication::exec();
}
