#include "permissions/manifest_permissions.h"

#include "permissions/permission_list.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class ManifestPermissionsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void listsWhatTheFieldsHold() {
    std::array<QString, 51> fields;
    fields[10] = u"not one"_s;
    for (size_t n = 1; n <= 40; ++n) fields[n + 10] = u"p%1"_s.arg(n);
    QCOMPARE(permissionList(fields, 0), QString());
    QCOMPARE(permissionList(fields, 2), u"p1\rp2\r"_s);
    const QString all = permissionList(fields, 40);
    QCOMPARE(all.count(u'\r'), 40);
    QCOMPARE(permissionList(fields, 2'000'000'000), all);
  }

  void theWindow() {
    MainWindowFixture window;
    apkinfo& form = *window.form;
    LoadedPackage& package = window.bench.state.package;
    Form1 list(window.bench.state, &form);
    connect(form.Command2, &QPushButton::clicked, &list, &Form1::Command2_Click);
    package.ManifestFields[11] = u"<b>android.permission.INTERNET</b>"_s;
    package.ManifestFields[12] = u"android.permission.CAMERA"_s;
    package.PermissionCount = 2;
    for (int press = 0; press < 2; ++press) form.Command2->click();
    QVERIFY(list.isVisible() && !list.isModal());
    QCOMPARE(list.Caption(), u"<b>android.permission.INTERNET</b>\randroid.permission.CAMERA\r"_s);
    // Two lines in plain text; the last line end begins a third.
    const int lines = list.Label1->sizeHint().height() / list.Label1->fontMetrics().lineSpacing();
    QCOMPARE(lines, 3);
    QTest::mouseClick(list.Permissions, Qt::LeftButton, {}, QPoint(3, 3));
    QTest::mouseClick(&list, Qt::LeftButton, {}, QPoint(1, 1));
    QTest::mouseClick(list.Label1, Qt::RightButton);
    QVERIFY(list.isVisible());
    QTest::mouseClick(list.Label1, Qt::LeftButton);
    QVERIFY(list.isHidden());
    package.PermissionCount = 0;
    form.Command2->click();
    QVERIFY(list.isVisible() && list.Label1->text().isEmpty() && !list.Label1->accessibleName().isEmpty());
    QTest::keyClick(list.Label1, Qt::Key_Escape);
    QVERIFY(list.isHidden());
  }
};

QTEST_MAIN(ManifestPermissionsTest)
#include "manifest_permissions_test.moc"
