#include "ui/theme.h"

#include <QApplication>
#include <QTest>

using namespace orvanta;

class ThemeTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void followsTheDesktop() {
    const auto isDark = [] {
      const QPalette palette = QApplication::palette();
      return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
    };
    qputenv("ORVANTA_COLOR_SCHEME", "light");
    theme::apply(*qApp);
    QVERIFY(!isDark());
    qputenv("ORVANTA_COLOR_SCHEME", "dark");
    QVERIFY(!isDark());
    Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);  // the user comes back to the program
    QVERIFY(isDark());
    qputenv("ORVANTA_COLOR_SCHEME", "light");
    Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);
    QVERIFY(!isDark());
  }
};

QTEST_MAIN(ThemeTest)
#include "theme_test.moc"
