#pragma once

#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "core/main_window.h"
#include "ui/own_settings.h"
#include "ui/recording_desktop.h"

namespace orvanta {

/// A main window with settings of its own, a desktop that answers from a list, and an end that is only
/// counted.
///
/// Make it after the application object and before anything reads settings.
class MainWindowFixture {
 public:
  MainWindowFixture() {
    settings = std::make_unique<SettingsStore>();
    MainWindowNeeds needs{bench, *settings, [this] { ++ends; }};
    form = std::make_unique<apkinfo>(needs);
  }

  QString filePath(const QString& name) const { return m_folder.filePath(name); }

 private:
  QTemporaryDir m_folder;
  OwnSettings m_ownSettings{m_folder.filePath(QStringLiteral("config"))};

 public:
  RecordingDesktop desktop;
  Workbench bench{desktop};
  int ends = 0;
  std::unique_ptr<SettingsStore> settings;
  std::unique_ptr<apkinfo> form;
};

}  // namespace orvanta
