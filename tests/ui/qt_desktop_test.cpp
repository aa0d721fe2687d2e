#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include "platform/host_style.h"
#include "ui/form.h"
#include "ui/qt_desktop.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

/// The real boxes, and the dialogs of the toolkit.
class QtDesktopTest : public QObject {
  Q_OBJECT

  QtDesktop m_desktop;
  QTemporaryDir m_folder;
  const QStringList folders =
      HostStyle::native().namesNeedEscapes ? QStringList{u"b"_s, u"a \"b\""_s} : QStringList{u"b"_s};
  bool m_told = false;

  QString at(const QString& name) const { return QDir::toNativeSeparators(m_folder.filePath(name)); }
  QCoro::Task<> askAndTell() {
    const QString folder = co_await m_desktop.askFolder(u"Where"_s);
    co_await m_desktop.showBox({folder});
    m_told = true;
  }
  template <class Dialog>
  static Dialog* open() {
    const auto active = [] { return qobject_cast<Dialog*>(QApplication::activeModalWidget()); };
    return QTest::qWaitFor([&] { return active() != nullptr; }) ? active() : nullptr;
  }

 private Q_SLOTS:
  void initTestCase() {
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    for (const QString& name : folders) QVERIFY(QDir(m_folder.path()).mkdir(name));
  }

  void typedNames_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("folder");
    for (const QString& name : {u"x y.apk"_s, u"x\"y.apk"_s, u"\"x\" \"y\""_s, u"x\""_s, u"\""_s})
      QTest::newRow(qPrintable(name)) << name << false;
    QTest::newRow("a whole path") << at(u"x\"y.apk"_s) << false;
    for (const QString& name : folders) QTest::newRow(qPrintable(u"the folder "_s + name)) << name << true;
  }
  void typedNames() {
    QFETCH(QString, typed);
    QFETCH(bool, folder);
    QString chosen;
    const auto take = [&chosen](const QString& path) { chosen = path; };
    const SaveFileQuestion question{u"Save"_s, at(u"taken \"x\".apk"_s), {u"APK (*.apk)"_s}};
    QDir::setCurrent(m_folder.path());
    const auto asking =
        (folder ? m_desktop.askFolder(u"Where"_s) : m_desktop.askSaveFile(question)).then(take);
    auto* dialog = open<QFileDialog>();
    QVERIFY(dialog != nullptr && QTest::qWaitForWindowActive(dialog));
    dialog->setDirectory(m_folder.path());
    auto* field = dialog->findChild<QLineEdit*>(u"fileNameEdit"_s);
    if (!folder) QCOMPARE(field->text(), u"taken \"x\".apk"_s);
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, typed);
    auto* buttons = dialog->findChild<QDialogButtonBox*>();
    QTest::mouseClick(buttons->button(folder ? QDialogButtonBox::Open : QDialogButtonBox::Save),
                      Qt::LeftButton);
    QTRY_COMPARE(chosen, QFileInfo(typed).isAbsolute() ? typed : at(typed));
  }

  void aBoxAfterADialog() {
    QWidget window;
    window.show();
    const auto asking = askAndTell();
    auto* dialog = open<QFileDialog>();
    QVERIFY(dialog != nullptr);
    // Some desktops tell only later that another window is the active one now.
    connect(dialog, &QDialog::finished, dialog, [dialog] { QApplication::setActiveWindow(dialog); });
    dialog->reject();
    QTest::qWait(100);  // time for the dialog to go without closing the box
    QVERIFY(open<QMessageBox>() != nullptr);
    QTest::keyClick(open<QMessageBox>(), Qt::Key_Return);
    QTRY_VERIFY(m_told);
  }

  void theEndWaitsForNoAnswer() {
    QtDesktop desktop;
    Form window(u"window"_s, 3000, 3000);
    const auto showing = window.showModal();
    QStringList answers;
    const auto answered = [&answers](BoxAnswer answer) {
      answers << (answer == BoxAnswer::No ? u"no"_s : u"yes"_s);
    };
    MessageBox question{u"Remove it?"_s};
    question.buttons = BoxButtons::YesNo;
    const auto asking = desktop.showBox(question).then(answered);
    const auto choosing = desktop.askFolder(u"Where"_s);
    QVERIFY(open<QDialog>() != nullptr);
    desktop.stopAsking();
    QTRY_VERIFY(choosing.isReady() && showing.isReady());
    QCoro::waitFor(desktop.showBox(question).then(answered));
    QCOMPARE(answers, QStringList(2, u"no"_s));
  }

  void longTexts_data() {
    QTest::addColumn<QString>("text");
    for (const QString& text :
         {u"one line\r\n"_s.repeated(5000), u"word "_s.repeated(5000), u"/folder"_s.repeated(60)})
      QTest::newRow(qPrintable(text.left(8))) << text + u" the end"_s;
  }
  void longTexts() {
    QFETCH(QString, text);
    const auto showing = m_desktop.showBox({text});
    auto* box = open<QDialog>();
    QVERIFY(box != nullptr && QTest::qWaitForWindowActive(box));
    auto* shown = box->findChild<QPlainTextEdit*>(u"boxText"_s);
    QCOMPARE(shown->toPlainText().remove(u'\n'), QString(text).remove(u"\r\n"_s));
    QVERIFY(shown->textInteractionFlags() & Qt::TextSelectableByMouse);
    QVERIFY2(shown->height() <= 12 * 1.5 * shown->fontMetrics().height(),
             qPrintable(QString::number(shown->height())));
    const QSize screen = box->screen()->availableSize();
    QVERIFY(box->width() < screen.width() && box->height() < screen.height());
    auto* more = box->findChild<QPushButton*>(u"boxMore"_s);
    const int before = shown->height();
    if (more->isVisible()) {
      QTest::mouseClick(more, Qt::LeftButton);
      QVERIFY(shown->height() > before);
      QVERIFY2(box->frameGeometry().bottom() <= box->screen()->availableGeometry().bottom(),
               qPrintable(QString::number(box->frameGeometry().bottom())));
    }
    QTest::keyClick(box, Qt::Key_Escape);
    QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
  }
};

QTEST_MAIN(QtDesktopTest)
#include "qt_desktop_test.moc"
