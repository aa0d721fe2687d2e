#include "adb/failure_codes.h"

#include <QHash>
#include <utility>

#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

struct Row {
  int number;
  FailureCode code;
};

// Several codes mean the same to a user.
const Bilingual damaged = {u"安装包已损坏或不完整。请重新下载。"_s,
                           u"The package is damaged or incomplete. Download it again."_s};
const Bilingual badManifest = {u"安装包的清单有错误，系统无法读取。请换一个安装包。"_s,
                               u"The package's manifest has errors. Get another copy of the package."_s};
const Bilingual badSignature = {
    u"安装包的签名无效，文件可能被修改过。请从原来源重新下载。"_s,
    u"The package's signature is not valid: it may have been altered. Download it again from its source."_s};
const Bilingual otherSigner = {
    u"已安装的同名应用来自另一个发布者。请先卸载它（其数据会丢失），再安装。"_s,
    u"The installed app of this name has another signer. Uninstall it first (its data is lost), then install."_s};
const Bilingual storageTrouble = {
    u"头显无法把应用写入存储。请腾出空间并重启头显，再试一次。"_s,
    u"The headset could not write the app to its storage. Free some space, restart the headset and try again."_s};
const Bilingual inconsistent = {
    u"安装包的各部分互相不一致。请重新下载整套文件。"_s,
    u"The parts of the package do not fit together. Download the whole set again."_s};
const Bilingual sharedUser = {
    u"应用要与另一个签名不同的应用共用数据。请先卸载同一系列的旧应用。"_s,
    u"The app shares its data with another one that has a different signer. Uninstall older apps of the same family first."_s};
const Bilingual cancelled = {
    u"安装被取消。请戴上头显，再试一次；头显询问时选择“允许”。"_s,
    u"The installation was cancelled. Put the headset on, try again, and choose “Allow” if it asks."_s};
const Bilingual notForUsers = {u"此安装包不是给普通用户安装的。请换一个安装包。"_s,
                               u"This package is not meant for users. Get another one."_s};
const Bilingual olderBuild = {
    u"头显上的版本更新，不能降级。请先卸载它（其数据会丢失），再安装。"_s,
    u"The headset has a newer build, which cannot be replaced by an older one. Uninstall it first (its data is lost), then install."_s};
const Bilingual fault = {u"头显的安装服务出错。请重启头显，再试一次。"_s,
                         u"The headset's installer failed. Restart the headset and try again."_s};
const Bilingual system = {
    u"需要另一个系统版本。请更新头显的系统，或换一个安装包。"_s,
    u"The app needs another version of the system. Update the headset, or get another package."_s};
const Bilingual wrongProcessor = {
    u"安装包是给另一种处理器做的。请换 ARM（arm64-v8a）版本。"_s,
    u"The package is made for another kind of processor. Get the one for ARM (arm64-v8a)."_s};
const Bilingual missingLibrary = {
    u"应用需要的一个系统组件在头显上没有。请更新头显的系统，或换一个安装包。"_s,
    u"The app needs a system component that the headset does not have. Update the headset, or get another package."_s};

const Row installRows[] = {
    {-1,
     {u"INSTALL_FAILED_ALREADY_EXISTS"_s,
      {u"应用已经安装。请先卸载，再安装。"_s,
       u"The app is installed already. Uninstall it first, then install."_s}}},
    {-2, {u"INSTALL_FAILED_INVALID_APK"_s, damaged}},
    {-3,
     {u"INSTALL_FAILED_INVALID_URI"_s,
      {u"头显找不到传来的安装包。请再试一次。"_s,
       u"The headset did not find the package that was sent. Try again."_s}}},
    {-4,
     {u"INSTALL_FAILED_INSUFFICIENT_STORAGE"_s,
      {u"头显的空间不足。请删除一些应用或文件，再试一次。"_s,
       u"The headset has too little free space. Remove some apps or files and try again."_s}}},
    {-5,
     {u"INSTALL_FAILED_DUPLICATE_PACKAGE"_s,
      {u"头显上已有同名应用。请先卸载它，再安装。"_s,
       u"An app of this name is on the headset already. Uninstall it first, then install."_s}}},
    {-6, {u"INSTALL_FAILED_NO_SHARED_USER"_s, sharedUser}},
    {-7, {u"INSTALL_FAILED_UPDATE_INCOMPATIBLE"_s, otherSigner}},
    {-8, {u"INSTALL_FAILED_SHARED_USER_INCOMPATIBLE"_s, sharedUser}},
    {-9, {u"INSTALL_FAILED_MISSING_SHARED_LIBRARY"_s, missingLibrary}},
    {-10,
     {u"INSTALL_FAILED_REPLACE_COULDNT_DELETE"_s,
      {u"头显无法删除旧版本。请先卸载它，再安装。"_s,
       u"The headset could not remove the old version. Uninstall it first, then install."_s}}},
    {-11,
     {u"INSTALL_FAILED_DEXOPT"_s,
      {u"头显无法为运行准备此应用：空间不足或安装包损坏。请腾出空间再试。"_s,
       u"The headset could not prepare the app to run: too little space, or a damaged package. Free some space and try again."_s}}},
    {-12,
     {u"INSTALL_FAILED_OLDER_SDK"_s,
      {u"头显的系统版本太旧。请更新头显的系统，再试一次。"_s,
       u"The headset's system is too old for this app. Update the headset and try again."_s}}},
    {-13,
     {u"INSTALL_FAILED_CONFLICTING_PROVIDER"_s,
      {u"已安装的另一个应用占用了它要用的名称。请先卸载那个应用。"_s,
       u"Another installed app holds a name that this one needs. Uninstall that app first."_s}}},
    {-14,
     {u"INSTALL_FAILED_NEWER_SDK"_s,
      {u"头显的系统版本太新，此应用不支持。请换新版安装包。"_s,
       u"The headset's system is too new for this app. Get a newer package."_s}}},
    {-15,
     {u"INSTALL_FAILED_TEST_ONLY"_s,
      {u"这是仅供测试的安装包。请换正式版，或在 ADB 命令行用 install -t 安装。"_s,
       u"This package is for tests only. Get the released one, or install it with “install -t” in the adb line."_s}}},
    {-16, {u"INSTALL_FAILED_CPU_ABI_INCOMPATIBLE"_s, wrongProcessor}},
    {-17,
     {u"INSTALL_FAILED_MISSING_FEATURE"_s,
      {u"应用需要头显没有的功能，不能在此头显上使用。"_s,
       u"The app needs a feature that this headset does not have."_s}}},
    {-18, {u"INSTALL_FAILED_CONTAINER_ERROR"_s, storageTrouble}},
    {-19, {u"INSTALL_FAILED_INVALID_INSTALL_LOCATION"_s, storageTrouble}},
    {-20, {u"INSTALL_FAILED_MEDIA_UNAVAILABLE"_s, storageTrouble}},
    {-21,
     {u"INSTALL_FAILED_VERIFICATION_TIMEOUT"_s,
      {u"系统检查安装包超时。请戴上头显查看有无询问，再试一次。"_s,
       u"The check of the package took too long. Look into the headset for a question and try again."_s}}},
    {-22,
     {u"INSTALL_FAILED_VERIFICATION_FAILURE"_s,
      {u"系统的安全检查没有通过。请只安装来源可信的安装包。"_s,
       u"The system's security check did not let the package pass. Install only from sources that you trust."_s}}},
    {-23,
     {u"INSTALL_FAILED_PACKAGE_CHANGED"_s,
      {u"安装包在安装过程中被改动。请再试一次。"_s,
       u"The package was changed while it was being installed. Try again."_s}}},
    {-24,
     {u"INSTALL_FAILED_UID_CHANGED"_s,
      {u"旧版本留下的数据不匹配。请先完全卸载旧版本，再安装。"_s,
       u"Data of an older installation does not fit. Uninstall the app together with its data, then install."_s}}},
    {-25, {u"INSTALL_FAILED_VERSION_DOWNGRADE"_s, olderBuild}},
    {-26, {u"INSTALL_FAILED_PERMISSION_MODEL_DOWNGRADE"_s, olderBuild}},
    {-27, {u"INSTALL_FAILED_SANDBOX_VERSION_DOWNGRADE"_s, olderBuild}},
    {-28,
     {u"INSTALL_FAILED_MISSING_SPLIT"_s,
      {u"安装包只是应用的一部分。请下载完整的单文件安装包。"_s,
       u"The package is only one part of the app. Get the whole app as one file."_s}}},
    {-29,
     {u"INSTALL_FAILED_DEPRECATED_SDK_VERSION"_s,
      {u"应用太旧，新系统不再允许安装。请换新版安装包。"_s,
       u"The app is made for a system so old that this one refuses it. Get a newer package."_s}}},
    {-100,
     {u"INSTALL_PARSE_FAILED_NOT_APK"_s,
      {u"这不是 APK 安装包，或文件已损坏。请重新下载。"_s,
       u"This is not an APK package, or it is damaged. Download it again."_s}}},
    {-101, {u"INSTALL_PARSE_FAILED_BAD_MANIFEST"_s, badManifest}},
    {-102, {u"INSTALL_PARSE_FAILED_UNEXPECTED_EXCEPTION"_s, damaged}},
    {-103,
     {u"INSTALL_PARSE_FAILED_NO_CERTIFICATES"_s,
      {u"安装包没有有效的签名，可能被修改过或不完整。请重新下载。"_s,
       u"The package has no valid signature: it was altered or is incomplete. Download it again."_s}}},
    {-104, {u"INSTALL_PARSE_FAILED_INCONSISTENT_CERTIFICATES"_s, otherSigner}},
    {-105, {u"INSTALL_PARSE_FAILED_CERTIFICATE_ENCODING"_s, badSignature}},
    {-106,
     {u"INSTALL_PARSE_FAILED_BAD_PACKAGE_NAME"_s,
      {u"应用的包名不合规定，系统不接受。请换一个安装包。"_s,
       u"The system does not accept the app's package name. Get another package."_s}}},
    {-107, {u"INSTALL_PARSE_FAILED_BAD_SHARED_USER_ID"_s, badManifest}},
    {-108, {u"INSTALL_PARSE_FAILED_MANIFEST_MALFORMED"_s, badManifest}},
    {-109, {u"INSTALL_PARSE_FAILED_MANIFEST_EMPTY"_s, badManifest}},
    {-110, {u"INSTALL_FAILED_INTERNAL_ERROR"_s, fault}},
    {-111,
     {u"INSTALL_FAILED_USER_RESTRICTED"_s,
      {u"头显不允许这次安装。请戴上头显查看询问，或换用设备主人的账户。"_s,
       u"The headset does not allow this installation. Look into it for a question, or use its owner's account."_s}}},
    {-112,
     {u"INSTALL_FAILED_DUPLICATE_PERMISSION"_s,
      {u"已安装的另一个应用定义了相同的权限。请先卸载那个应用。"_s,
       u"Another installed app defines the same permission. Uninstall that app first."_s}}},
    {-113, {u"INSTALL_FAILED_NO_MATCHING_ABIS"_s, wrongProcessor}},
    {-114, {u"NO_NATIVE_LIBRARIES"_s, wrongProcessor}},
    {-115, {u"INSTALL_FAILED_ABORTED"_s, cancelled}},
    // Three names for one number, from one version of Android to the next.
    {-116, {u"INSTALL_FAILED_SESSION_INVALID"_s, fault}},
    {-116, {u"INSTALL_FAILED_INSTANT_APP_INVALID"_s, notForUsers}},
    {-116, {u"INSTALL_FAILED_EPHEMERAL_INVALID"_s, notForUsers}},
    {-117, {u"INSTALL_FAILED_BAD_DEX_METADATA"_s, inconsistent}},
    {-118, {u"INSTALL_FAILED_BAD_SIGNATURE"_s, badSignature}},
    {-119,
     {u"INSTALL_FAILED_OTHER_STAGED_SESSION_IN_PROGRESS"_s,
      {u"头显正在进行另一次安装或更新。请重启头显，再试一次。"_s,
       u"Another installation or update is under way on the headset. Restart it and try again."_s}}},
    {-120, {u"INSTALL_FAILED_MULTIPACKAGE_INCONSISTENCY"_s, inconsistent}},
    {-121,
     {u"INSTALL_FAILED_WRONG_INSTALLED_VERSION"_s,
      {u"头显上已安装的版本不是此更新所要求的。请先卸载，再安装完整安装包。"_s,
       u"This update is for another installed version. Uninstall the app and install the whole package."_s}}},
    {-122, {u"INSTALL_FAILED_PROCESS_NOT_DEFINED"_s, badManifest}},
    {-123,
     {u"INSTALL_PARSE_FAILED_ONLY_COREAPP_ALLOWED"_s,
      {u"头显处于只启动核心系统的状态。请正常重启头显，再试一次。"_s,
       u"The headset has started its core system only. Restart it and try again."_s}}},
    {-124,
     {u"INSTALL_PARSE_FAILED_RESOURCES_ARSC_COMPRESSED"_s,
      {u"安装包打包方式有误，新系统不接受。请换一个安装包。"_s,
       u"The package was put together in a way that newer systems refuse. Get another copy of it."_s}}},
    {-125, {u"INSTALL_PARSE_FAILED_SKIPPED"_s, system}},
    {-126,
     {u"INSTALL_FAILED_DUPLICATE_PERMISSION_GROUP"_s,
      {u"已安装的另一个应用定义了相同的权限组。请先卸载那个应用。"_s,
       u"Another installed app defines the same group of permissions. Uninstall that app first."_s}}},
    {-127, {u"INSTALL_FAILED_BAD_PERMISSION_GROUP"_s, badManifest}},
    {-128, {u"INSTALL_ACTIVATION_FAILED"_s, fault}},
    {-129, {u"INSTALL_FAILED_PRE_APPROVAL_NOT_AVAILABLE"_s, cancelled}},
    {-130, {u"INSTALL_FAILED_SHARED_LIBRARY_BAD_CERTIFICATE_DIGEST"_s, missingLibrary}},
    {-131, {u"INSTALL_FAILED_MULTI_ARCH_NOT_MATCH_ALL_NATIVE_ABIS"_s, wrongProcessor}},
};

const Row uninstallRows[] = {
    {-1,
     {u"DELETE_FAILED_INTERNAL_ERROR"_s,
      {u"头显没有卸载：应用不存在，或属于系统。请重启头显，再试一次。"_s,
       u"The headset did not uninstall it: the app is not there, or belongs to the system. Restart the headset and try again."_s}}},
    {-2,
     {u"DELETE_FAILED_DEVICE_POLICY_MANAGER"_s,
      {u"应用是设备管理员。请先在头显的设置中取消，再卸载。"_s,
       u"The app is a device administrator. Take that from it in the headset's settings, then uninstall."_s}}},
    {-3,
     {u"DELETE_FAILED_USER_RESTRICTED"_s,
      {u"此账户不允许卸载。请换用设备主人的账户。"_s,
       u"This account may not uninstall apps. Use the account of the headset's owner."_s}}},
    {-4,
     {u"DELETE_FAILED_OWNER_BLOCKED"_s,
      {u"头显的管理者禁止卸载此应用。请联系管理者。"_s,
       u"Whoever manages the headset does not allow this app to be uninstalled. Ask them."_s}}},
    {-5,
     {u"DELETE_FAILED_ABORTED"_s,
      {u"卸载被取消。请再试一次。"_s, u"The removal was cancelled. Try again."_s}}},
    {-6,
     {u"DELETE_FAILED_USED_SHARED_LIBRARY"_s,
      {u"其他应用还在使用它。请先卸载那些应用。"_s, u"Other apps still use it. Uninstall those first."_s}}},
    {-7,
     {u"DELETE_FAILED_APP_PINNED"_s,
      {u"应用被固定在屏幕上。请在头显中取消固定，再卸载。"_s,
       u"The app is pinned to the screen. Unpin it in the headset, then uninstall."_s}}},
    {-8,
     {u"DELETE_FAILED_FOR_CHILD_PROFILE"_s,
      {u"无法从头显的另一个用户那里卸载。请切换到那个用户卸载。"_s,
       u"It could not be uninstalled for another user of the headset. Switch to that user and uninstall it there."_s}}},
};

using Table = QHash<QString, FailureCode>;

/// By name and by number; of two names with one number the first counts.
template <size_t count>
Table tableOf(const Row (&rows)[count]) {
  Table table;
  for (const Row& row : rows) {
    table.insert(row.code.name, row.code);
    const QString number = QString::number(row.number);
    if (!table.contains(number)) table.insert(number, row.code);
  }
  return table;
}

}  // namespace

std::optional<FailureCode> failureCode(const QString& code, PackageWork work) {
  static const Table install = tableOf(installRows);
  static const Table uninstall = tableOf(uninstallRows);
  const Table& mine = work == PackageWork::Install ? install : uninstall;
  const Table& other = work == PackageWork::Install ? uninstall : install;
  if (const auto found = mine.find(code); found != mine.end()) return *found;
  // A name tells by itself which work it belongs to.
  const auto found = other.find(code);
  return found != other.end() && found->name == code ? std::optional(*found) : std::nullopt;
}

}  // namespace orvanta
