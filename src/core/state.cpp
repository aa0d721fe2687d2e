#include "core/state.h"

#include <utility>

#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString wordOf(BuildVerdict verdict) {
  switch (verdict) {
    case BuildVerdict::Older:
      return designed(u"Older");
    case BuildVerdict::Newer:
      return designed(u"Newer");
    case BuildVerdict::Same:
      return designed(u"Same");
    case BuildVerdict::NotInstalled:
    case BuildVerdict::Undecided:
      break;
  }
  return {};
}

void State::noteNoPackage() {
  package.NoApkLoaded = 1;
  m_availability.mayUninstall = false;
  Q_EMIT packageChanged();
  Q_EMIT availabilityChanged();
}

void State::setStorage(const StorageShown& storage) {
  m_headset.storage = storage;
  m_headset.room = storage.room;
  Q_EMIT storageChanged();
}

void State::setInstalledBuild(BuildVerdict verdict, const QString& number) {
  m_headset.newerBuild = verdict == BuildVerdict::Newer ? number : QString();
  if (verdict == BuildVerdict::Undecided) return;
  InstalledBuild& build = m_headset.build;
  build.verdict = verdict;
  if (verdict == BuildVerdict::NotInstalled) {
    build.lightText = false;
  } else {
    build.number = number;
    build.lightText = build.lightText || verdict != BuildVerdict::Older;
  }
  Q_EMIT installedBuildChanged();
}

void State::forgetHeadset() {
  // A free figure that is empty would leave the last one standing.
  m_headset.storage = {{}, {}, u" "_s, {}};
  m_headset.InstalledSeen = false;
  noteDevices({}, 0);
  Q_EMIT storageChanged();
}

void State::noteDevices(const QString& serial, qsizetype unchosen) {
  const QString before = std::exchange(m_headset.serial, serial);
  m_headset.unchosen = unchosen;
  // The first list comes after the figures of the start.
  if (!serial.isEmpty() && (before.isEmpty() || before == serial)) return;
  m_headset.room.reset();
  m_headset.newerBuild.clear();
}

void State::setPhase(Availability::Phase phase) {
  if (std::exchange(m_availability.phase, phase) == phase) return;
  if (phase == Availability::Phase::Unlocked) m_availability.mayUninstall = true;
  if (phase == Availability::Phase::Locked || phase == Availability::Phase::Gone)
    m_availability.mayUninstall = false;
  Q_EMIT availabilityChanged();
}

void State::setMayUninstall(bool may) {
  if (std::exchange(m_availability.mayUninstall, may) != may) Q_EMIT availabilityChanged();
}

void State::closeInstalledApps() {
  m_installedAppsClosed = true;
  Q_EMIT availabilityChanged();
}

}  // namespace orvanta
