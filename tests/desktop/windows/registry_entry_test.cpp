#include <windows.h>

#include <QDir>
#include <QTest>

#include "desktop/file_manager_entry.h"
#include "desktop/first_run.h"
#include "desktop/registry_entry.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// The text in the registry; empty if there is none or it is of another type.
QString registryText(HKEY root, const QString& key, const QString& name) {
  std::array<wchar_t, 1024> text = {};
  auto bytes = static_cast<DWORD>(sizeof(text));
  ::RegGetValueW(root, key.toStdWString().c_str(), name.toStdWString().c_str(), RRF_RT_REG_SZ, nullptr,
                 text.data(), &bytes);
  return QString::fromWCharArray(text.data());
}

}  // namespace

class RegistryEntryTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void whatTheFirstRunLeaves() {
    MainWindowFixture window;
    const auto entry = FileManagerEntry::create();
    QCoro::waitFor(
        FirstRun({window.desktop, *window.settings, [&window] { window.form->QuitProgram(); }}, *entry));
    QCOMPARE(window.desktop.boxes.size(), 3);
    QCOMPARE(window.ends, 1);

    const QString program = QDir::toNativeSeparators(QCoreApplication::applicationFilePath());
    const QString verb = u"*\\shell\\Orvanta"_s;
    QCOMPARE(registryText(HKEY_CLASSES_ROOT, verb + u"\\Command"_s, QString()), program + u" %1"_s);
    QCOMPARE(registryText(HKEY_CLASSES_ROOT, verb, u"AppliesTo"_s), u".apk"_s);
    QCOMPARE(registryText(HKEY_CLASSES_ROOT, verb, u"Icon"_s), program);
    const std::pair<QString, QString> settings[] = {
        {u"Explentry"_s, u"on"_s}, {u"Grant"_s, u"off"_s}, {u"tooltip"_s, u"on"_s}};
    for (const auto& [section, value] : settings)
      QCOMPARE(registryText(HKEY_CURRENT_USER, u"Software\\Orvanta\\Orvanta\\"_s + section, u"Value"_s),
               value);
  }

  void programInTheRootOfADrive() { QCOMPARE(executablePath(u"D:\\"_s, u"orvanta"_s), u"D:\\orvanta.exe"_s); }

  void refusedByTheRegistry() {
    MainWindowFixture window;
    // A permanent key cannot be made below a volatile one, not even by an administrator.
    HKEY verb = nullptr;
    QCOMPARE(::RegCreateKeyExW(HKEY_CLASSES_ROOT, L"*\\shell", 0, nullptr, REG_OPTION_VOLATILE,
                               KEY_ALL_ACCESS, nullptr, &verb, nullptr),
             ERROR_SUCCESS);
    ::RegCloseKey(verb);
    const auto entry = FileManagerEntry::create();
    QCoro::waitFor(
        FirstRun({window.desktop, *window.settings, [&window] { window.form->QuitProgram(); }}, *entry));
    QCOMPARE(window.desktop.boxTexts().last(), u"错误：也许没有管理员权限！"_s);
    QCOMPARE(window.settings->read(u"Explentry"_s, QString()), u"off"_s);
  }
};

QTEST_MAIN(RegistryEntryTest)
#include "registry_entry_test.moc"
