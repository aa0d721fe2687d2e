#include "badging_walk.h"

#include <optional>

namespace orvanta::badging {

namespace {

constexpr std::string_view kAndroidSpace = "http://schemas.android.com/apk/res/android";
constexpr int32_t kDonut = 4;
constexpr int32_t kJellyBean = 16;
constexpr int32_t kLastInstallLocation = 2;
constexpr uint16_t kMediumDensity = 160;

std::string describe(std::string_view attribute, std::string_view error) {
  std::string text = "ERROR getting 'android:";
  text += attribute;
  text += "' attribute: ";
  text += error;
  return text;
}

}  // namespace

Walk::Walk(ResourceTable& table, Manifest& manifest, Output& output, Output& errors)
    : m_table(table), m_manifest(manifest), m_output(output), m_errors(errors) {
  m_request.locale.language = "en";
  m_request.locale.region = "US";
  m_request.locale.computeScript();
  m_request.density = kMediumDensity;
}

bool Walk::isSound(std::string_view attribute) {
  return m_error.empty() || fail(describe(attribute, m_error));
}

bool Walk::fail(std::string_view message) {
  m_errors << "AndroidManifest.xml:" << static_cast<int32_t>(m_manifest.line()) << ": error: " << message
           << "\n";
  return false;
}

bool Walk::run() {
  for (auto event = m_manifest.next(); event != Manifest::Event::Done; event = m_manifest.next()) {
    if (m_output.isFull()) return fail("ERROR: the package has too much to say");
    if (event == Manifest::Event::End) endElement();
    if (event != Manifest::Event::Start) continue;
    ++m_depth;
    const std::optional<std::string> tag = m_manifest.element();
    if (!tag) return fail("ERROR: failed to get XML element name (bad string pool)");
    if (!startElement(*tag)) return false;
  }
  printImpliedPermissions();
  m_features.print(m_output);
  return true;
}

bool Walk::startElement(const std::string& tag) {
  switch (m_depth) {
    case 1:
      return tag == "manifest" ? readManifest() : fail("ERROR: manifest does not start with <manifest> tag");
    case 2:
      m_inApplication = false;
      return readTopLevel(tag);
    case 3:
      m_inActivity = false;
      if (m_inApplication) return readComponent(tag);
      return m_inFeatureGroup && tag == "uses-feature" ? readGroupFeature() : true;
    case 4:
      if (tag == "intent-filter") m_inIntentFilter = true;
      return true;
    case 5:
      return m_inIntentFilter ? readIntent(tag) : true;
    default:
      return true;
  }
}

void Walk::endElement() {
  --m_depth;
  if (m_depth < 2) {
    m_inApplication = false;
    m_inSupportsInput = false;
    m_inFeatureGroup = false;
  } else if (m_depth < 3) {
    if (m_inActivity && m_isMain && m_isLauncher) {
      std::string name = m_activityName;
      const size_t dot = name.find('.');
      if (dot == 0) name = m_package + name;
      if (dot == std::string::npos) name = m_package + "." + name;
      m_output << "launchable-activity:";
      if (!name.empty()) m_output << " name='";
      if (!name.empty()) m_output.escaped(name) << "' ";
      m_output << " label='";
      m_output.escaped(m_activityLabel) << "' icon='";
      m_output.escaped(m_activityIcon) << "'\n";
    }
    m_inActivity = false;
    m_isMain = m_isLauncher = false;
  } else if (m_depth < 4) {
    m_inIntentFilter = false;
  }
}

bool Walk::readManifest() {
  std::string_view ignored;
  m_package = m_manifest.string({}, "package", ignored);
  m_output << "package: name='";
  m_output.escaped(m_package) << "' ";
  const int32_t code = integer(kVersionCode, -1);
  if (!isSound("versionCode")) return false;
  m_output << "versionCode='";
  if (code > 0) m_output << code;
  m_output << "' ";
  const std::string name = resolved(kVersionName);
  if (!isSound("versionName")) return false;
  m_output << "versionName='";
  m_output.escaped(name) << "'";
  const std::string split = m_manifest.string({}, "split", ignored);
  if (!split.empty()) {
    m_output << " split='";
    m_output.escaped(split) << "'";
  }
  const std::string build = m_manifest.string({}, "platformBuildVersionName", ignored);
  if (!build.empty()) m_output << " platformBuildVersionName='" << build << "'";
  const int32_t compileSdk = integer(kCompileSdkVersion, -1);
  if (!isSound("compileSdkVersion")) return false;
  if (compileSdk > 0) m_output << " compileSdkVersion='" << compileSdk << "'";
  const std::string codename = resolved(kCompileSdkVersionCodename);
  if (!codename.empty()) {
    m_output << " compileSdkVersionCodename='";
    m_output.escaped(codename) << "'";
  }
  m_output << "\n";
  const int32_t location = resolvedInteger(kInstallLocation, -1);
  if (!isSound("installLocation")) return false;
  if (location > kLastInstallLocation) {
    m_errors << "Invalid installLocation " << location << "\n";
    return false;
  }
  return true;
}

bool Walk::readTopLevel(const std::string& tag) {
  if (tag == "application") {
    m_inApplication = true;
    return readApplication();
  }
  if (tag == "uses-sdk") return readUsesSdk();
  if (tag == "uses-feature") return readFeature();
  if (tag == "uses-permission") return readPermission();
  if (tag == "uses-permission-sdk-23" || tag == "uses-permission-sdk-m") return readSdk23Permission();
  if (tag == "supports-input") m_inSupportsInput = true;
  if (tag == "uses-package" || tag == "original-package" || tag == "supports-gl-texture")
    return requireName();
  if (tag == "package-verifier") string(kName);
  if (tag == "compatible-screens") {
    m_manifest.skipElement();
    --m_depth;
  }
  if (tag == "feature-group") {
    m_inFeatureGroup = true;
    m_features.beginGroup(resolved(kLabel));
    return isSound("label");
  }
  return true;
}

bool Walk::requireName() {
  const std::string name = string(kName);
  return name.empty() || !m_error.empty() ? fail(describe("name", m_error)) : true;
}

bool Walk::readUsesSdk() {
  return readSdkVersion(kMinSdkVersion, "minSdkVersion", "sdkVersion:'", false) &&
         readSdkVersion(kTargetSdkVersion, "targetSdkVersion", "targetSdkVersion:'", true);
}

bool Walk::readSdkVersion(Attribute attribute, std::string_view name, std::string_view line, bool isTarget) {
  const int32_t number = integer(attribute, -1);
  if (m_error.empty()) {
    if (number == -1) return true;
    if (!isTarget || m_targetSdk < number) m_targetSdk = number;
    m_output << line << number << "'\n";
    return true;
  }
  m_error = {};
  const std::string codename = resolved(attribute);
  if (!isSound(name)) return false;
  if (codename == "Donut" && (!isTarget || m_targetSdk < kDonut)) m_targetSdk = kDonut;
  m_output << line;
  m_output.escaped(codename) << "'\n";
  return true;
}

bool Walk::readFeature() {
  const std::string name = string(kName);
  if (name.empty() || !m_error.empty()) {
    integer(kGlEsVersion, -1);
    return true;
  }
  const int32_t required = integer(kRequired, 1);
  if (!m_error.empty()) return fail("failed to read attribute 'android:required': " + std::string(m_error));
  const int32_t version = m_manifest.integer(kAndroidSpace, "version", 0, m_error);
  if (!m_error.empty()) return fail("failed to read attribute 'android:version': " + std::string(m_error));
  m_features.add(name, required != 0, version);
  return true;
}

bool Walk::readGroupFeature() {
  const std::string name = resolved(kName);
  if (name.empty() || !m_error.empty()) {
    integer(kGlEsVersion, -1);
    return true;
  }
  const int32_t version = m_manifest.integer(kAndroidSpace, "version", 0, m_error);
  if (!m_error.empty()) return fail("failed to read attribute 'android:version': " + std::string(m_error));
  m_features.addToGroup(name, version);
  return true;
}

bool Walk::readPermission() {
  const std::string name = string(kName);
  if (!isSound("name")) return false;
  if (name.empty()) return fail("ERROR: missing 'android:name' for uses-permission");
  m_features.addPermission(name, m_targetSdk, false);
  const int32_t maxSdk = lenientInteger(kMaxSdkVersion, -1);
  const std::string feature = string(kRequiredFeature);
  const std::string notFeature = string(kRequiredNotFeature);
  if (name == "android.permission.WRITE_EXTERNAL_STORAGE") {
    m_writesStorage = true;
    m_writeStorageMaxSdk = maxSdk;
  }
  m_readsStorage |= name == "android.permission.READ_EXTERNAL_STORAGE";
  m_readsPhoneState |= name == "android.permission.READ_PHONE_STATE";
  m_readsContacts |= name == "android.permission.READ_CONTACTS";
  m_writesContacts |= name == "android.permission.WRITE_CONTACTS";
  m_readsCallLog |= name == "android.permission.READ_CALL_LOG";
  m_writesCallLog |= name == "android.permission.WRITE_CALL_LOG";

  const auto printMaxSdk = [this, maxSdk] {
    if (maxSdk != -1) m_output << " maxSdkVersion='" << maxSdk << "'";
  };
  m_output << "uses-permission: name='";
  m_output.escaped(name) << "'";
  printMaxSdk();
  if (!feature.empty()) m_output << " requiredFeature='" << feature << "'";
  if (!notFeature.empty()) m_output << " requiredNotFeature='" << notFeature << "'";
  m_output << "\n";
  if (lenientInteger(kRequired, 1) == 0) {
    m_output << "optional-permission: name='";
    m_output.escaped(name) << "'";
    printMaxSdk();
    m_output << "\n";
  }
  return true;
}

bool Walk::readSdk23Permission() {
  const std::string name = string(kName);
  if (!isSound("name")) return false;
  if (name.empty()) return fail("ERROR: missing 'android:name' for uses-permission-sdk-23");
  m_features.addPermission(name, m_targetSdk, true);
  m_output << "uses-permission-sdk-23: name='";
  m_output.escaped(name) << "'";
  const int32_t maxSdk = lenientInteger(kMaxSdkVersion, -1);
  if (maxSdk != -1) m_output << " maxSdkVersion='" << maxSdk << "'";
  m_output << "\n";
  return true;
}

void Walk::printPermission(std::string_view name, int32_t maxSdkVersion) {
  m_output << "uses-permission: name='android.permission." << name << "'";
  if (maxSdkVersion != -1) m_output << " maxSdkVersion='" << maxSdkVersion << "'";
  m_output << "\n";
}

void Walk::printImpliedPermission(std::string_view name, std::string_view reason, int32_t maxSdkVersion) {
  printPermission(name, maxSdkVersion);
  m_output << "uses-implied-permission: name='android.permission." << name << "'";
  if (maxSdkVersion != -1) m_output << " maxSdkVersion='" << maxSdkVersion << "'";
  m_output << " reason='" << reason << "'\n";
}

void Walk::printImpliedPermissions() {
  if (m_targetSdk < kDonut) {
    if (!m_writesStorage) printImpliedPermission("WRITE_EXTERNAL_STORAGE", "targetSdkVersion < 4", -1);
    if (!m_readsPhoneState) printImpliedPermission("READ_PHONE_STATE", "targetSdkVersion < 4", -1);
    m_writesStorage = true;
  }
  if (m_writesStorage && !m_readsStorage) {
    printImpliedPermission("READ_EXTERNAL_STORAGE", "requested WRITE_EXTERNAL_STORAGE", m_writeStorageMaxSdk);
  }
  if (m_targetSdk < kJellyBean) {
    if (m_readsContacts && !m_readsCallLog) {
      printImpliedPermission("READ_CALL_LOG", "targetSdkVersion < 16 and requested READ_CONTACTS", -1);
    }
    if (m_writesContacts && !m_writesCallLog) {
      printImpliedPermission("WRITE_CALL_LOG", "targetSdkVersion < 16 and requested WRITE_CONTACTS", -1);
    }
  }
}

}  // namespace orvanta::badging
