#include "ui/theme.h"

#include <QApplication>
#include <QHelpEvent>
#include <QTest>
#include <QTextDocumentFragment>

#include "ui/controls.h"

using namespace Qt::StringLiterals;
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

  void toolTipsShowTheirVeryText() {
    Label label(u"label"_s, nullptr);
    label.show();
    for (const QString& text :
         {u"A & B \"x\" 'y' &amp; <z>"_s, u"<b>x</b>"_s, u"&lt;b&gt;"_s, u"<img src=\"/etc/x.png\">  a & b"_s,
          u"<b>two</b>\nlines"_s, QString(900, u'W') + u"<i>"_s}) {
      label.setToolTip(text);
      QHelpEvent asked(QEvent::ToolTip, QPoint(1, 1), label.mapToGlobal(QPoint(1, 1)));
      QApplication::sendEvent(&label, &asked);
      const QLabel* tip = nullptr;
      for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("QTipLabel") && widget->isVisible()) tip = qobject_cast<const QLabel*>(widget);
      }
      QVERIFY(tip != nullptr);
      QString shown = tip->text();
      if (Qt::mightBeRichText(shown)) shown = QTextDocumentFragment::fromHtml(shown).toPlainText();
      QCOMPARE(text.contains(u'\n') ? shown : shown.remove(u'\n'), text);
      QVERIFY(tip->width() < 600);
    }
  }
};

QTEST_MAIN(ThemeTest)
#include "theme_test.moc"
