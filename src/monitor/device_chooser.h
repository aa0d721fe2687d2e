#pragma once

#include <QCoroTask>
#include <QLineEdit>
#include <QTableWidget>
#include <functional>

#include "adb/devices.h"
#include "core/settings_store.h"
#include "ui/busy_strip.h"
#include "ui/controls.h"
#include "ui/form.h"

namespace orvanta {

class Workbench;

/// The window "Headsets": which devices adb has, which one this program works on, and the ways to reach one
/// over the network. It asks adb only when it opens and when the user asks it to.
class DeviceChooser : public Form {
  Q_OBJECT

 public:
  /// `chosen` is called whenever the choice, or what adb has, may have changed.
  DeviceChooser(Workbench& bench, SettingsStore& settings, std::function<void()> chosen, QWidget* above);

  /// Shows the window and asks adb. Returns when the user has closed it.
  QCoro::Task<> choose();

  QTableWidget* devices;  ///< serial, model, state
  Label* lblNotice;       ///< what came of the last press
  BusyStrip* busyStrip;   ///< the running tool, with Stop
  QLabel* lblSteps;       ///< what to do while adb has no device, in the list's place
  Frame* network;         ///< around the next five
  Button* overNetwork;    ///< takes the marked headset over to the network
  Button* reconnect;      ///< tries the addresses that worked before
  QLineEdit* address;     ///< a headset's address with its port
  QLineEdit* code;        ///< the pairing code; without one it is not paired
  Button* connectTo;      ///< connects to that address, or pairs with it
  Button* again;          ///< asks adb anew
  Button* use;            ///< chooses the marked device
  Button* done;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void createList();
  void createNetwork();
  void arrange();
  void list(const DeviceList& found);
  void showWhatCanBeDone();
  QString marked() const;
  void setNotice(const QString& notice) {
    lblNotice->setCaption(notice);
    lblNotice->setToolTip(notice);
  }
  void takeFor(const QString& serial);
  void remember(const QString& reached);
  QStringList remembered() const;
  QCoro::Task<> refresh();
  QCoro::Task<> ask();
  QCoro::Task<bool> connectAt(QString place, int tries);
  QCoro::Task<> overNetwork_Click();
  QCoro::Task<> reconnect_Click();
  QCoro::Task<> connectTo_Click();
  void use_Click();

  Workbench& m_bench;
  SettingsStore& m_settings;
  std::function<void()> m_chosen;
};

}  // namespace orvanta
