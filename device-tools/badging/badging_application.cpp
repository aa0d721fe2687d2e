// What the walk does inside <application>.

#include <utility>

#include "badging_walk.h"

namespace orvanta::badging {

bool Walk::readApplication() {
  const Request usual = m_request;
  std::string label;
  printLabels(label);
  m_request = usual;
  printIcons();
  m_request = usual;
  const std::string icon = resolved(kIcon);
  if (!isSound("icon")) return false;
  integer(kTestOnly, 0);
  if (!isSound("testOnly")) return false;
  const std::string banner = resolved(kBanner);
  if (!isSound("banner")) return false;
  m_output << "application: label='";
  m_output.escaped(label) << "' icon='";
  m_output.escaped(icon) << "'";
  if (!banner.empty()) {
    m_output << " banner='";
    m_output.escaped(banner) << "'";
  }
  m_output << "\n";
  resolvedInteger(kIsGame, 0);
  if (!isSound("isGame")) return false;
  resolvedInteger(kDebuggable, 0);
  return isSound("debuggable");
}

void Walk::printLabels(std::string& label) {
  for (Locale& locale : m_table.locales()) {
    const std::string name = locale.name();
    // A configuration may have only a region; labels are asked for by language.
    if (locale.language.empty()) std::swap(locale.language, locale.region);
    m_request.locale = std::move(locale);
    m_request.locale.computeScript();
    const std::string text = resolved(kLabel);
    if (text.empty()) continue;
    if (name.empty() || label.empty()) label = text;
    m_output << "application-label" << (name.empty() ? "" : "-") << name << ":'";
    m_output.escaped(text) << "'\n";
  }
}

void Walk::printIcons() {
  for (const uint16_t density : m_table.densities()) {
    m_request.density = density;
    const std::string icon = resolved(kIcon);
    if (icon.empty()) continue;
    m_output << "application-icon-" << int32_t{density} << ":'";
    m_output.escaped(icon) << "'\n";
  }
}

bool Walk::readComponent(const std::string& tag) {
  if (tag == "activity") return readActivity();
  if (tag == "provider") return readProvider();
  if (tag == "input-type") return m_inSupportsInput ? requireName() : true;
  if (tag == "uses-library") {
    string(kName);
    return m_error.empty() ||
           fail("ERROR getting 'android:name' attribute for uses-library " + std::string(m_error));
  }
  if (tag == "receiver" || tag == "service") {
    const bool isService = tag == "service";
    const std::string name = string(kName);
    if (!m_error.empty()) {
      return fail("ERROR getting 'android:name' attribute for " + tag + (isService ? ":" : ": ") +
                  std::string(m_error));
    }
    string(kPermission);
    // The only error that does not end the walk.
    if (!m_error.empty()) {
      fail("ERROR getting 'android:permission' attribute for " + tag + " '" + name +
           "': " + std::string(m_error));
    }
  }
  return true;
}

bool Walk::readActivity() {
  m_inActivity = true;
  m_activityName = string(kName);
  if (!isSound("name")) return false;
  m_activityLabel = resolved(kLabel);
  if (!isSound("label")) return false;
  m_activityIcon = resolved(kIcon);
  if (!isSound("icon")) return false;
  resolved(kBanner);
  if (!isSound("banner")) return false;
  const int32_t orientation = resolvedInteger(kScreenOrientation, -1);
  if (m_error.empty()) m_features.addOrientation(orientation);
  return true;
}

bool Walk::readProvider() {
  constexpr std::pair<Attribute, std::string_view> kSwitches[] = {
      {kExported, "exported"}, {kGrantUriPermissions, "grantUriPermissions"}};
  for (const auto& [attribute, name] : kSwitches) {
    resolvedInteger(attribute, -1);
    if (m_error.empty()) continue;
    return fail("ERROR getting 'android:" + std::string(name) +
                "' attribute for provider: " + std::string(m_error));
  }
  resolved(kPermission);
  return m_error.empty() ||
         fail("ERROR getting 'android:permission' attribute for provider: " + std::string(m_error));
}

bool Walk::readIntent(const std::string& tag) {
  if (tag == "action") {
    const std::string action = string(kName);
    if (!isSound("name")) return false;
    if (m_inActivity && action == "android.intent.action.MAIN") m_isMain = true;
  }
  if (tag == "category") {
    const std::string category = string(kName);
    if (!m_error.empty()) return fail("ERROR getting 'name' attribute: " + std::string(m_error));
    if (m_inActivity && category == "android.intent.category.LAUNCHER") m_isLauncher = true;
  }
  return true;
}

}  // namespace orvanta::badging
