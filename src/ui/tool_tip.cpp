#include "ui/tool_tip.h"

#include <QTextLayout>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr qsizetype longestText = 1000;
constexpr qreal widestLine = 480;

/// `line` broken wherever it would get wider than that.
QString broken(const QString& line) {
  QTextLayout layout(line, QToolTip::font());
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  QStringList parts;
  layout.beginLayout();
  for (QTextLine part = layout.createLine(); part.isValid(); part = layout.createLine()) {
    part.setLineWidth(widestLine);
    parts << line.mid(part.textStart(), part.textLength());
  }
  layout.endLayout();
  return parts.join(u'\n');
}

}  // namespace

void showToolTip(const QPoint& place, const QString& text, QWidget* over) {
  QStringList lines = text.left(longestText).split(u'\n');
  if (text.size() > longestText) lines.last() += u'…';
  for (QString& line : lines) line = broken(line);
  QString shown = lines.join(u'\n');
  // The toolkit guesses whether a text is markup; only real markup is never misread.
  if (Qt::mightBeRichText(shown))
    shown = u"<p style='white-space:pre'>"_s + shown.toHtmlEscaped() + u"</p>"_s;
  QToolTip::showText(place, shown, over);
}

}  // namespace orvanta
