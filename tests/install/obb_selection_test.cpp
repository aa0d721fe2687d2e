#include "install/obb_selection.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

ExpansionFileList listOf(int count) {
  ExpansionFileList module;
  module.ObbFileCount = count;
  for (int i = 1; i <= qMin(count, 255); ++i)
    module.ObbFileNames[static_cast<size_t>(i)] = u"main.%1.obb"_s.arg(i);
  return module;
}

}  // namespace

class ObbSelectionTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyFileHasARowWhileThereAreRows() {
    for (const auto& [files, rows] : {std::pair{1, 1}, {17, 17}, {18, 17}, {300, 17}}) {
      ExpansionFileList module = listOf(files);
      Form3 form(u"game.apk"_s, module, nullptr);
      form.show();
      int shown = 0;
      for (size_t k = 0; k < form.Check1.size(); ++k) {
        if (!form.Check1[k]->isVisible()) continue;
        ++shown;
        QCOMPARE(form.Label1[k]->Caption(), u"main.%1.obb"_s.arg(k + 1));
        QCOMPARE(form.Check1[k]->Value(), 0);
        QVERIFY(form.Check1[k]->geometry().bottom() < form.height());
      }
      QCOMPARE(shown, rows);
    }
  }

  void marksAndConfirmation() {
    ExpansionFileList module = listOf(2);
    Form3 form(u"game.apk"_s, module, nullptr);
    form.show();
    QTest::mouseClick(form.Check1[0], Qt::LeftButton);
    QCOMPARE(form.Check1[0]->text(), u"Skip"_s);
    QCOMPARE(form.Check1[0]->Value(), 1);
    QTest::mouseClick(form.Check1[0], Qt::LeftButton);
    QCOMPARE(form.Check1[0]->text(), u"安装"_s);
    QTest::keyClick(form.Check1[1], Qt::Key_Space);
    // The button blinks until then.
    const FormColor before = form.Command1->BackColor();
    QTRY_VERIFY(form.Command1->BackColor() != before);
    QTRY_COMPARE(form.Command1->BackColor(), before);
    QVERIFY(!module.ObbSelectionConfirmed);
    QTest::keyClick(form.Check1[1], Qt::Key_Return);
    QVERIFY(module.ObbSelectionConfirmed);
    QVERIFY(!form.isVisible());
    QCOMPARE(form.Check1[1]->Value(), 1);
  }

  void otherWaysOut() {
    const std::pair<QString, std::function<void(Form3&)>> ways[] = {
        {u"closed"_s, [](Form3& form) { form.close(); }},
        {u"cancelled"_s, [](Form3& form) { QTest::keyClick(form.Command1, Qt::Key_Escape); }},
        {u"cancelled"_s, [](Form3& form) { QTest::keyClick(form.cmdCancel, Qt::Key_Return); }},
        {u"cancelled"_s, [](Form3& form) { QTest::mouseClick(form.cmdCancel, Qt::LeftButton); }}};
    for (const auto& [signal, leave] : ways) {
      ExpansionFileList module = listOf(1);
      Form3 form(u"game.apk"_s, module, nullptr);
      QStringList told;
      connect(&form, &Form::closedByUser, this, [&told] { told << u"closed"_s; });
      connect(&form, &Form3::cancelled, this, [&told] { told << u"cancelled"_s; });
      const auto shown = form.showModal();
      leave(form);
      QTRY_VERIFY(shown.isReady());
      QCOMPARE(told, QStringList(signal));
      QVERIFY(!module.ObbSelectionConfirmed);
    }
  }
};

QTEST_MAIN(ObbSelectionTest)
#include "obb_selection_test.moc"
