#include "feature_list.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace orvanta::badging {

namespace {

constexpr size_t kMostText = 4 << 20;
constexpr int kDonut = 4;
constexpr int kLollipop = 21;

struct Family {
  std::string_view name;
  std::initializer_list<std::string_view> parents;
};

/// Asking for a sub-feature implies its parent.
const Family kFamilies[] = {
    {"android.hardware.camera.autofocus", {"android.hardware.camera"}},
    {"android.hardware.camera.flash", {"android.hardware.camera"}},
    {"android.hardware.location.gps", {"android.hardware.location"}},
    {"android.hardware.location.network", {"android.hardware.location"}},
    {"android.hardware.faketouch.multitouch", {"android.hardware.faketouch"}},
    {"android.hardware.faketouch.multitouch.distinct",
     {"android.hardware.faketouch.multitouch", "android.hardware.faketouch"}},
    {"android.hardware.faketouch.multitouch.jazzhands",
     {"android.hardware.faketouch.multitouch", "android.hardware.faketouch"}},
    {"android.hardware.touchscreen.multitouch", {"android.hardware.touchscreen"}},
    {"android.hardware.touchscreen.multitouch.distinct",
     {"android.hardware.touchscreen.multitouch", "android.hardware.touchscreen"}},
    {"android.hardware.touchscreen.multitouch.jazzhands",
     {"android.hardware.touchscreen.multitouch", "android.hardware.touchscreen"}},
};

struct Implication {
  std::string_view permission;
  std::string_view feature;
  int belowTarget;  // holds for apps that target less; 0 for all
  int aboveTarget;  // holds for apps that target more; 0 for all
};

/// Apps older than a feature's name asked only for its permission.
constexpr Implication kImplications[] = {
    {"CAMERA", "camera", 0, 0},
    {"ACCESS_FINE_LOCATION", "location.gps", kLollipop, 0},
    {"ACCESS_FINE_LOCATION", "location", 0, 0},
    {"ACCESS_COARSE_LOCATION", "location.network", kLollipop, 0},
    {"ACCESS_COARSE_LOCATION", "location", 0, 0},
    {"ACCESS_MOCK_LOCATION", "location", 0, 0},
    {"ACCESS_LOCATION_EXTRA_COMMANDS", "location", 0, 0},
    {"INSTALL_LOCATION_PROVIDER", "location", 0, 0},
    {"BLUETOOTH", "bluetooth", 0, kDonut},
    {"BLUETOOTH_ADMIN", "bluetooth", 0, kDonut},
    {"RECORD_AUDIO", "microphone", 0, 0},
    {"ACCESS_WIFI_STATE", "wifi", 0, 0},
    {"CHANGE_WIFI_STATE", "wifi", 0, 0},
    {"CHANGE_WIFI_MULTICAST_STATE", "wifi", 0, 0},
};

constexpr std::string_view kTelephonyPermissions[] = {
    "CALL_PHONE", "CALL_PRIVILEGED",    "MODIFY_PHONE_STATE", "PROCESS_OUTGOING_CALLS",
    "READ_SMS",   "RECEIVE_SMS",        "RECEIVE_MMS",        "RECEIVE_WAP_PUSH",
    "SEND_SMS",   "WRITE_APN_SETTINGS", "WRITE_SMS"};

constexpr std::string_view kPermissionPrefix = "android.permission.";
constexpr std::string_view kHardwarePrefix = "android.hardware.";

std::string joined(std::string_view first, std::string_view second, std::string_view third = {}) {
  std::string text(first);
  text += second;
  text += third;
  return text;
}

std::string targetReason(char order, int sdk) {
  std::string text = "targetSdkVersion ";
  text += order;
  text += ' ';
  if (sdk >= 10) text += static_cast<char>('0' + sdk / 10);
  text += static_cast<char>('0' + sdk % 10);
  return text;
}

}  // namespace

/// Whether there is room for another name: all are kept until the end, and a hostile file has many.
bool Features::keep(std::string_view name) {
  m_kept += name.size();
  return m_kept < kMostText;
}

void Features::add(const std::string& name, bool required, int32_t version) {
  if (!keep(name)) return;
  m_common[name] = {required, version};
  if (required) addParents(m_common, name);
}

void Features::beginGroup(std::string label) {
  if (keep(label)) m_groups.push_back({std::move(label), {}});
}

void Features::addToGroup(const std::string& name, int32_t version) {
  if (m_groups.empty() || !keep(name)) return;
  m_groups.back().features[name] = {true, version};
  addParents(m_groups.back().features, name);
}

void Features::addParents(Stated& features, std::string_view name) {
  for (const Family& family : kFamilies) {
    if (family.name != name) continue;
    for (const std::string_view parent : family.parents) features[std::string(parent)] = {};
  }
}

void Features::addPermission(const std::string& permission, int targetSdk, bool sdk23) {
  std::string_view name = permission;
  if (!name.starts_with(kPermissionPrefix)) return;
  name.remove_prefix(kPermissionPrefix.size());
  for (const Implication& rule : kImplications) {
    if (rule.permission != name) continue;
    if (rule.belowTarget != 0 && targetSdk >= rule.belowTarget) continue;
    if (rule.aboveTarget != 0 && targetSdk <= rule.aboveTarget) continue;
    const std::string feature = joined(kHardwarePrefix, rule.feature);
    imply(feature, joined("requested ", permission, " permission"), sdk23);
    if (rule.belowTarget != 0) imply(feature, targetReason('<', rule.belowTarget), sdk23);
    if (rule.aboveTarget != 0) imply(feature, targetReason('>', rule.aboveTarget), sdk23);
  }
  if (std::find(std::begin(kTelephonyPermissions), std::end(kTelephonyPermissions), name) !=
      std::end(kTelephonyPermissions)) {
    imply("android.hardware.telephony", "requested a telephony permission", sdk23);
  }
}

void Features::addOrientation(int32_t orientation) {
  const bool landscape = orientation == 0 || orientation == 6 || orientation == 8;
  const bool portrait = orientation == 1 || orientation == 7 || orientation == 9;
  if (!landscape && !portrait) return;
  const std::string_view name = landscape ? "landscape" : "portrait";
  imply(joined("android.hardware.screen.", name),
        joined("one or more activities have specified a ", name, " orientation"), false);
}

void Features::imply(std::string_view name, std::string reason, bool sdk23) {
  auto [place, added] = m_implied.try_emplace(std::string(name));
  place->second.sdk23 = sdk23 && (added || place->second.sdk23);
  place->second.reasons.insert(std::move(reason));
}

void Features::print(Output& output) {
  if (!m_common.contains("android.hardware.touchscreen") &&
      !m_implied.contains("android.hardware.touchscreen")) {
    imply("android.hardware.faketouch", "default feature for all apps", false);
  }
  if (m_groups.empty()) {
    print(output, {{}, m_common});
    printImplied(output);
    return;
  }
  for (Group& group : m_groups) {
    group.features.insert(m_common.begin(), m_common.end());
    if (!group.features.empty()) print(output, group);
    group = {};
    if (output.isFull()) return;
  }
}

void Features::print(Output& output, const Group& group) {
  output << "feature-group: label='" << group.label << "'\n";
  for (const auto& [name, feature] : group.features) {
    output << (feature.required ? "  uses-feature: name='" : "  uses-feature-not-required: name='");
    output.escaped(name) << "'";
    if (feature.version > 0) output << " version='" << feature.version << "'";
    output << "\n";
  }
}

void Features::printImplied(Output& output) const {
  for (const auto& [name, implied] : m_implied) {
    if (m_common.contains(name)) continue;
    const std::string_view suffix = implied.sdk23 ? "-sdk-23" : "";
    output << "  uses-feature" << suffix << ": name='" << name << "'\n";
    output << "  uses-implied-feature" << suffix << ": name='" << name << "' reason='";
    size_t left = implied.reasons.size();
    for (const std::string& reason : implied.reasons) {
      output << reason << (--left == 0 ? "'\n" : left == 1 ? ", and " : ", ");
    }
  }
}

}  // namespace orvanta::badging
