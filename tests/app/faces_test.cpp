#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTest>

#include "app/application.h"
#include "core/control_hints.h"
#include "core/face_question.h"
#include "desktop/tip.h"
#include "install/obb_selection.h"
#include "inventory/parser.h"
#include "ui/own_settings.h"
#include "ui/recording_desktop.h"
#include "ui/toggle_button.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// Every text that a widget shows or speaks.
QStringList textsOf(const QWidget* widget) {
  QStringList texts = {widget->toolTip(), widget->accessibleName(), widget->accessibleDescription()};
  if (widget->isWindow()) texts << widget->windowTitle();
  if (const auto* label = qobject_cast<const QLabel*>(widget)) texts << label->text();
  if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) texts << button->text();
  if (const auto* frame = qobject_cast<const QGroupBox*>(widget)) texts << frame->title();
  if (const auto* field = qobject_cast<const QLineEdit*>(widget)) texts << field->placeholderText();
  for (const QAction* action : widget->actions()) texts << action->text();
  if (const auto* table = qobject_cast<const QTableView*>(widget)) {
    for (int column = 0; column < table->model()->columnCount(); ++column)
      texts << table->model()->headerData(column, Qt::Horizontal).toString();
  }
  return texts;
}

/// What is the same in all faces.
QString withoutNames(QString text) {
  static const QRegularExpression names(
      u"https?://\\S+|shell ls "
      u"/sdcard|Orvanta|Halden|Quest|adb|ADB|APK|apk|OBB|obb|USB|Wi-Fi|MTP|MiB|G[bB]|Root|Ctrl|F\\d"
      u"|\\d+p|com\\.\\S+|main\\.\\S+"_s);
  return text.remove(names);
}

/// The room that a control's caption needs beyond what it has, in pixels.
int lackingRoom(const QWidget* widget) {
  const auto textWidth = [widget](const QString& text) {
    return widget->fontMetrics().horizontalAdvance(text);
  };
  if (const auto* frame = qobject_cast<const Frame*>(widget)) {
    QFont small = frame->font();
    small.setPixelSize(11);
    return QFontMetrics(small).horizontalAdvance(frame->title()) - frame->contentArea().width();
  }
  // What the user's data is has a tool-tip.
  const auto* label = qobject_cast<const Label*>(widget);
  if (label != nullptr && label->toolTip().isEmpty()) return textWidth(label->text()) - label->width();
  if (const auto* toggle = qobject_cast<const ToggleButton*>(widget))
    return textWidth(toggle->text()) - toggle->width();
  if (const auto* button = qobject_cast<const QPushButton*>(widget))
    return textWidth(button->text()) + 4 - button->width();
  if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
    return button->text().isEmpty() ? 0 : button->sizeHint().width() - button->width();
  return 0;
}

}  // namespace

/// The windows in each face: one language each, and room for all of it.
class FacesTest : public QObject {
  Q_OBJECT

  QTemporaryDir m_folder;
  OwnSettings m_settings{m_folder.filePath(u"config"_s)};
  RecordingDesktop m_desktop;
  Application m_program{m_desktop, [] {}};
  SettingsStore m_store;
  ExpansionFileList m_files;
  std::unique_ptr<Form3> m_Form3;
  Form7 m_Form7{m_store};
  FaceQuestion m_question;

  void wear(Face face) {
    keepFace(m_store, face);
    // The layouts come after the texts.
    for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
  }

  QWidgetList widgets() {
    QWidgetList all;
    for (QWidget* widget : QApplication::allWidgets()) {
      // The toolkit's own are its translators' business; a field's text is the user's.
      if (widget->objectName().startsWith(u"qt_"_s) || qobject_cast<FaceSwitch*>(widget) != nullptr ||
          widget->objectName() == "names"_L1 || qobject_cast<FaceQuestion*>(widget->window()) != nullptr ||
          widget->parent() == m_program.mainWindow().faceSwitch)
        continue;
      all << widget;
    }
    return all;
  }

 private Q_SLOTS:
  void initTestCase() {
    m_files.ObbFileCount = 1;
    m_files.ObbFileNames[1] = u"main.1.com.example.app.obb"_s;
    m_Form3 = std::make_unique<Form3>(u"com.example.app.apk"_s, m_files, nullptr);
    State& state = m_program.bench().state;
    state.noteNoPackage();
    state.setInstalledBuild(BuildVerdict::Newer, u"12"_s);
    m_program.bench().status.setVerdict({Status::Sign::Good, {u"已安装"_s, u"Installed"_s}});
    m_program.installedApps().window().prepareLoad();
    m_program.installedApps().window().fill(
        readInventory(u"IP3x: com.example.app \r\napplication-label:\r\n"_s));
    m_program.installedApps().window().noteRead({});
    m_program.mainWindow().setWidth(openWidth);
    m_program.mainWindow().setHeight(openHeight);
    m_program.installedApps().window().resize(1100, 600);
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (qobject_cast<Form*>(window) != nullptr) window->show();
    }
  }

  void cleanup() { setFace(Face::AsDesigned); }

  void oneLanguage_data() {
    QTest::addColumn<Face>("face");
    QTest::addColumn<QString>("foreign");
    QTest::newRow("English") << Face::English << u"\\p{Han}"_s;
    QTest::newRow("Chinese") << Face::Chinese << u"[A-Za-z]{2,}"_s;
  }
  void oneLanguage() {
    QFETCH(Face, face);
    QFETCH(QString, foreign);
    wear(face);
    QStringList wrong;
    for (const QWidget* widget : widgets()) {
      for (const QString& text : textsOf(widget)) {
        if (withoutNames(text).contains(QRegularExpression(foreign)))
          wrong << widget->window()->objectName() + u'.' + widget->objectName() + u": "_s + text;
      }
    }
    wrong.removeDuplicates();
    QVERIFY2(wrong.isEmpty(), qUtf8Printable(wrong.join(u'\n')));
  }

  void captionsFit_data() {
    QTest::addColumn<Face>("face");
    QTest::newRow("as designed") << Face::AsDesigned;
    QTest::newRow("English") << Face::English;
    QTest::newRow("Chinese") << Face::Chinese;
  }
  void captionsFit() {
    QFETCH(Face, face);
    wear(face);
    QStringList cut;
    for (const QWidget* widget : widgets()) {
      const bool inView = widget->isVisible() && !widget->visibleRegion().isEmpty();
      if (inView && lackingRoom(widget) > 0)
        cut << u"%1.%2 lacks %3 pixels"_s.arg(widget->window()->objectName(), widget->objectName())
                   .arg(lackingRoom(widget));
    }
    QCOMPARE(m_program.mainWindow().Command1->shortcut(), QKeySequence(u"Alt+I"_s));
    QVERIFY2(cut.isEmpty(), qUtf8Printable(cut.join(u'\n')));
  }

  /// The help tells of every control by its own name.
  void everyControlIsTold() {
    wear(Face::AsDesigned);
    int told = 0;
    for (const QWidget* widget : m_program.mainWindow().findChildren<QWidget*>()) {
      const bool captioned = widget->isVisible() && (qobject_cast<const Button*>(widget) != nullptr ||
                                                     qobject_cast<const CheckBox*>(widget) != nullptr ||
                                                     qobject_cast<const Frame*>(widget) != nullptr);
      if (!captioned || widget->window() != &m_program.mainWindow() ||
          widget->objectName() == "statusAction"_L1)
        continue;
      const ControlHint* hint = hintFor(widget);
      QVERIFY2(hint != nullptr, qPrintable(widget->objectName()));
      if (widget->objectName() != QStringView(hint->name) || hint->caption.isEmpty()) continue;
      ++told;
      QCOMPARE(widget->accessibleName(), hint->caption.shown());
    }
    QVERIFY(told > 25);
  }

  /// A choice is kept, and the environment goes before it.
  void choice() {
    keepFace(m_store, Face::Chinese);
    takeFace(m_store);
    QCOMPARE(face(), Face::Chinese);
    qputenv("ORVANTA_LANGUAGE", "en");
    takeFace(m_store);
    QCOMPARE(face(), Face::English);
    qunsetenv("ORVANTA_LANGUAGE");
  }
};

QTEST_MAIN(FacesTest)
#include "faces_test.moc"
