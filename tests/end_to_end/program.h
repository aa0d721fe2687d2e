#pragma once

#include <QDir>
#include <QFile>
#include <QTest>
#include <memory>

#include "app/application.h"
#include "testing/virtual_headset.h"
#include "ui/recording_desktop.h"

namespace orvanta {

/// The whole program with its real windows and tools, beside a virtual headset of its own.
class Program {
 public:
  Program() = default;
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// Starts the headset. The reason on failure, else an empty text.
  QString startHeadset() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       headset.workPath(QStringLiteral("config")));
    qputenv("XDG_CONFIG_HOME", headset.workPath(QStringLiteral("config")).toUtf8());
    qputenv("XDG_CACHE_HOME", headset.workPath(QStringLiteral("cache")).toUtf8());
    qputenv("XDG_STATE_HOME", headset.workPath(QStringLiteral("state-home")).toUtf8());
    SettingsStore().write(QStringLiteral("Explentry"), QStringLiteral("on"));
    return headset.start();
  }

  /// Starts the program with `commandText`. False if its main window does not appear.
  bool start(const QString& commandText) {
    application = std::make_unique<Application>(desktop, [] {});
    application->start(commandText);
    return QTest::qWaitFor([this] { return form().isVisible(); }, 30'000) &&
           QTest::qWaitForWindowActive(&form());
  }

  ~Program() {
    if (!application) return;
    // A poll that is under way would come back to it; a turn ends it.
    form().Timer3->stop();
    (void)bench().turn.begin();
    (void)QTest::qWaitFor([this] { return !application->watcher().polling(); }, 10'000);
  }

  apkinfo& form() { return application->mainWindow(); }
  Workbench& bench() { return application->bench(); }
  QString console() { return form().txtOutputs->Text(); }

  /// The services opened on the headset that have `part` in them, without the prefix of the shell protocol.
  QStringList commands(const QString& part = {}) const {
    QStringList found;
    for (const QString& service : headset.services()) {
      const QString command = service.section(u':', 1);
      if (command.contains(part)) found << command;
    }
    return found;
  }

  test::VirtualHeadset headset;
  RecordingDesktop desktop;
  std::unique_ptr<Application> application;
};

}  // namespace orvanta
