#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "feature_list.h"
#include "manifest.h"
#include "output.h"
#include "resource_table.h"

namespace orvanta::badging {

/// The numbers of the platform's attributes.
enum Attribute : uint32_t {
  kLabel = 0x01010001,
  kIcon = 0x01010002,
  kName = 0x01010003,
  kPermission = 0x01010006,
  kDebuggable = 0x0101000f,
  kExported = 0x01010010,
  kGrantUriPermissions = 0x0101001b,
  kScreenOrientation = 0x0101001e,
  kMinSdkVersion = 0x0101020c,
  kVersionCode = 0x0101021b,
  kVersionName = 0x0101021c,
  kTargetSdkVersion = 0x01010270,
  kMaxSdkVersion = 0x01010271,
  kTestOnly = 0x01010272,
  kGlEsVersion = 0x01010281,
  kRequired = 0x0101028e,
  kInstallLocation = 0x010102b7,
  kBanner = 0x010103f2,
  kIsGame = 0x010103f4,
  kRequiredFeature = 0x01010557,
  kRequiredNotFeature = 0x01010558,
  kCompileSdkVersion = 0x01010572,
  kCompileSdkVersionCodename = 0x01010573,
};

/// One walk through one manifest. A step that meets an attribute of the wrong kind reports it and returns
/// false, which ends the walk. An error stays until the next step that checks for one, as in aapt.
class Walk {
 public:
  Walk(ResourceTable& table, Manifest& manifest, Output& output, Output& errors);

  /// Prints the lines; false when an error ended them, which is then in the errors.
  bool run();

 private:
  bool startElement(const std::string& tag);
  void endElement();
  bool readManifest();
  bool readApplication();
  bool readUsesSdk();
  bool readSdkVersion(Attribute attribute, std::string_view name, std::string_view line, bool isTarget);
  bool readFeature();
  bool readGroupFeature();
  bool readPermission();
  bool readSdk23Permission();
  bool readTopLevel(const std::string& tag);
  bool readComponent(const std::string& tag);
  bool readActivity();
  bool readProvider();
  bool readIntent(const std::string& tag);
  void printLabels(std::string& label);
  void printIcons();
  void printImpliedPermissions();
  void printPermission(std::string_view name, int32_t maxSdkVersion);
  void printImpliedPermission(std::string_view name, std::string_view reason, int32_t maxSdkVersion);

  bool fail(std::string_view message);
  /// True when no attribute has been of the wrong kind; says which one otherwise.
  bool isSound(std::string_view attribute);
  bool requireName();

  std::string string(Attribute attribute) { return m_manifest.string(attribute, m_error); }
  int32_t integer(Attribute attribute, int32_t otherwise) {
    return m_manifest.integer(attribute, otherwise, m_error);
  }
  int32_t lenientInteger(Attribute attribute, int32_t otherwise) const {
    std::string_view ignored;
    return m_manifest.integer(attribute, otherwise, ignored);
  }
  std::string resolved(Attribute attribute) { return m_manifest.resolved(attribute, m_request, m_error); }
  int32_t resolvedInteger(Attribute attribute, int32_t otherwise) {
    return m_manifest.resolvedInteger(attribute, otherwise, m_request, m_error);
  }

  ResourceTable& m_table;
  Manifest& m_manifest;
  Output& m_output;
  Output& m_errors;
  Request m_request;
  Features m_features;
  std::string_view m_error;

  int m_depth = 0;
  bool m_inApplication = false;
  bool m_inSupportsInput = false;
  bool m_inFeatureGroup = false;
  bool m_inActivity = false;
  bool m_inIntentFilter = false;
  bool m_isMain = false;
  bool m_isLauncher = false;

  std::string m_package;
  std::string m_activityName;
  std::string m_activityLabel;
  std::string m_activityIcon;
  int32_t m_targetSdk = 0;
  int32_t m_writeStorageMaxSdk = -1;
  bool m_writesStorage = false;
  bool m_readsStorage = false;
  bool m_readsPhoneState = false;
  bool m_readsContacts = false;
  bool m_writesContacts = false;
  bool m_readsCallLog = false;
  bool m_writesCallLog = false;
};

}  // namespace orvanta::badging
