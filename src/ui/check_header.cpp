#include "ui/check_header.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionButton>
#include <algorithm>

#include "text/text.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int boxWidth = 26;
constexpr int iconSide = 20;
constexpr int iconMargin = 4;

}  // namespace

CheckHeader::CheckHeader(QWidget* parent) : QHeaderView(Qt::Vertical, parent) {
  showIcons(false);
  setSectionsClickable(false);
  worded(this, [this] { setToolTip(inFace(u"选择，Ctrl+空格"_s, u"Check, Ctrl+Space"_s)); });
}

void CheckHeader::showIcons(bool shown) {
  setFixedWidth(shown ? boxWidth + iconSide + iconMargin : boxWidth);
}

QRect CheckHeader::boxArea(const QRect& row) {
  return {row.left(), row.top(), boxWidth, row.height()};
}

void CheckHeader::paintSection(QPainter* painter, const QRect& rect, int viewRow) const {
  const QPalette& colors = palette();
  painter->fillRect(rect, colors.color(QPalette::Base));
  QStyleOptionButton box;
  box.initFrom(this);
  const bool checked = isChecked && isChecked(viewRow);
  box.state = QStyle::State_Enabled | (checked ? QStyle::State_On : QStyle::State_Off);
  box.rect = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &box, this);
  box.rect.moveCenter(boxArea(rect).center());
  style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, painter, this);
  if (iconOf && width() > boxWidth) {
    const QRect place(rect.left() + boxWidth, rect.top() + (rect.height() - iconSide) / 2, iconSide,
                      iconSide);
    iconOf(viewRow).paint(painter, place);
  }
  painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1),
                    colors.color(QPalette::AlternateBase));
}

void CheckHeader::paintEvent(QPaintEvent* event) {
  QHeaderView::paintEvent(event);
  // The toolkit gives the room under the last row a ground of its own.
  const int end = std::max(0, length() - offset());
  QPainter(viewport())
      .fillRect(0, end, width(), std::max(0, viewport()->height() - end), palette().color(QPalette::Base));
}

void CheckHeader::mousePressEvent(QMouseEvent* event) {
  const int viewRow = logicalIndexAt(event->position().toPoint());
  if (event->button() == Qt::LeftButton && viewRow >= 0) Q_EMIT toggled(viewRow);
}

}  // namespace orvanta
