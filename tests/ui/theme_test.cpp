#include "ui/theme.h"

#include <QApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPainter>
#include <QTest>
#include <QTextDocumentFragment>
#include <cmath>

#include "ui/controls.h"
#include "ui/status_sign.h"

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

  void everythingCanBeReadInBothSchemes() {
    const auto light = [](const QColor& color) {
      const auto part = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
      };
      return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF()) +
             0.05;
    };
    const auto contrast = [&light](const QColor& a, const QColor& b) {
      return qMax(light(a), light(b)) / qMin(light(a), light(b));
    };
    const auto over = [](const QColor& ink, const QColor& ground) {
      QImage point(1, 1, QImage::Format_RGB32);
      point.fill(ground);
      QPainter(&point).fillRect(point.rect(), ink);
      return point.pixelColor(0, 0);
    };
    for (const char* scheme : {"light", "dark"}) {
      qputenv("ORVANTA_COLOR_SCHEME", scheme);
      theme::apply(*qApp);
      const QPalette palette = QApplication::palette();
      const QColor ground = over(theme::frameGround(palette), palette.color(QPalette::Window));
      using Sign = Status::Sign;
      for (const Sign sign : {Sign::None, Sign::Good, Sign::Working, Sign::Hint, Sign::Warning, Sign::Error})
        QVERIFY2(contrast(signColor(sign, palette), ground) >= 4.5, scheme);
      QVERIFY2(contrast(over(theme::captionText(palette), ground), ground) >= 4.5, scheme);
      const QColor marked = palette.color(QPalette::Highlight);
      QVERIFY2(contrast(palette.color(QPalette::HighlightedText), marked) >= 4.5, scheme);
      QLineEdit field;
      field.resize(100, 30);
      const QImage picture = field.grab().toImage();
      const QColor border = picture.pixelColor(50, 0);
      for (const QColor& beside : {picture.pixelColor(50, 4), palette.color(QPalette::Window)})
        QVERIFY2(contrast(border, beside) >= 3, qPrintable(QString::number(contrast(border, beside))));
    }
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
