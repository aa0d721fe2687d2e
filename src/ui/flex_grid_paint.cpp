#include "ui/flex_grid_paint.h"

#include <QIcon>
#include <QPainter>
#include <QPainterPath>

#include "ui/flex_grid.h"
#include "ui/theme.h"

namespace orvanta {

namespace {

constexpr int sideMargin = 3;
constexpr int pictureSize = 16;

/// Paints what the roles of a cell hold.
template <typename RoleValue>
void paintCell(QPainter& painter, const QRect& area, const QColor& ink, RoleValue value) {
  if (const auto picture = value(Qt::DecorationRole).template value<QIcon>(); !picture.isNull()) {
    QRect place(0, 0, pictureSize, pictureSize);
    place.moveCenter(area.center());
    picture.paint(&painter, place);
    return;
  }
  const QRect line = area.adjusted(sideMargin, 0, -sideMargin, 0);
  const QFontMetrics metrics = painter.fontMetrics();
  const QString text = metrics.elidedText(value(Qt::DisplayRole).toString(), Qt::ElideRight, line.width());
  const auto alignment = value(Qt::TextAlignmentRole).template value<Qt::Alignment>();
  int left = line.left();
  if (alignment & Qt::AlignRight) left += line.width() - metrics.horizontalAdvance(text);
  if (alignment & Qt::AlignHCenter) left += (line.width() - metrics.horizontalAdvance(text)) / 2;
  // All texts on one baseline: a glyph from a taller font must not move its row's text.
  const int baseLine = line.top() + (line.height() + metrics.ascent() - metrics.descent()) / 2;
  painter.setPen(ink);
  painter.drawText(left, baseLine, text);
}

void paintRuling(QPainter& painter, const QRect& area, const QColor& color) {
  painter.fillRect(QRect(area.left(), area.bottom(), area.width(), 1), color);
}

void paintSortArrow(QPainter& painter, const QRect& header, Qt::SortOrder order, const QColor& ink) {
  const QPointF middle(header.right() - FlexGridHeader::arrowRoom / 2.0, header.center().y() + 1);
  const double up = order == Qt::AscendingOrder ? 1 : -1;
  QPainterPath arrow(middle + QPointF(-3.5, 2 * up));
  arrow.lineTo(middle + QPointF(0, -2 * up));
  arrow.lineTo(middle + QPointF(3.5, 2 * up));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(arrow);
}

}  // namespace

void FlexGridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
  const auto& grid = static_cast<const FlexGrid&>(*option.widget);
  const QPalette& colors = option.palette;
  const int row = grid.rows().row(index.row());
  const auto own = grid.CellBackColor(row, index.column());
  painter->save();
  painter->setFont(option.font);
  painter->fillRect(option.rect, own.value_or(colors.color(QPalette::Base)));
  if (!own && grid.Row() == row) {
    painter->setOpacity(0.14);
    painter->fillRect(option.rect, colors.color(QPalette::Highlight));
    painter->setOpacity(1);
  }
  paintCell(*painter, option.rect, own ? readableOn(*own) : colors.color(QPalette::Text),
            [&index](int role) { return index.data(role); });
  paintRuling(*painter, option.rect, colors.color(QPalette::AlternateBase));
  painter->restore();
}

FlexGridHeader::FlexGridHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
  setSectionsClickable(true);
  setHighlightSections(false);
  setStretchLastSection(false);
}

void FlexGridHeader::paintEvent(QPaintEvent* event) {
  QHeaderView::paintEvent(event);
  const int end = length() - offset();
  if (end >= viewport()->width()) return;
  QPainter painter(viewport());
  const QRect empty(end, 0, viewport()->width() - end, height());
  painter.fillRect(empty, palette().color(QPalette::Base));
  paintRuling(painter, empty, palette().color(QPalette::Mid));
}

void FlexGridHeader::paintSection(QPainter* painter, const QRect& rect, int column) const {
  const QPalette colors = palette();
  const bool sorted = isSortIndicatorShown() && sortIndicatorSection() == column;
  const auto own = static_cast<const FlexGrid*>(parentWidget())->CellBackColor(0, column);
  painter->save();
  painter->setFont(font());
  painter->fillRect(rect, own.value_or(colors.color(QPalette::Base)));
  paintCell(*painter, sorted ? rect.adjusted(0, 0, -arrowRoom, 0) : rect,
            own ? readableOn(*own) : colors.color(QPalette::Text),
            [this, column](int role) { return model()->headerData(column, orientation(), role); });
  if (sorted) paintSortArrow(*painter, rect, sortIndicatorOrder(), theme::accent());
  const QColor line = colors.color(QPalette::Mid);
  paintRuling(*painter, rect, line);
  painter->fillRect(QRect(rect.right(), rect.top() + 5, 1, rect.height() - 10), line);
  painter->restore();
}

}  // namespace orvanta
