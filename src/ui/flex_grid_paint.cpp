#include "ui/flex_grid_paint.h"

#include <QAbstractItemView>
#include <QIcon>
#include <QPainter>
#include <QPainterPath>

#include "ui/flex_grid_model.h"
#include "ui/theme.h"

namespace orvanta {

namespace {

constexpr int sideMargin = 3;
constexpr int pictureSize = 16;

struct Cell {
  QRect area;
  QString text;
  QIcon picture;
  Qt::Alignment alignment;
  QColor ground;
  QColor ink;
};

void paintCell(QPainter& painter, const Cell& cell) {
  painter.fillRect(cell.area, cell.ground);
  if (!cell.picture.isNull()) {
    QRect picture(0, 0, pictureSize, pictureSize);
    picture.moveCenter(cell.area.center());
    cell.picture.paint(&painter, picture);
    return;
  }
  if (cell.text.isEmpty()) return;
  const QRect line = cell.area.adjusted(sideMargin, 0, -sideMargin, 0);
  const QFontMetrics metrics = painter.fontMetrics();
  const QString text = metrics.elidedText(cell.text, Qt::ElideRight, line.width());
  int left = line.left();
  if (cell.alignment & Qt::AlignRight) left += line.width() - metrics.horizontalAdvance(text);
  if (cell.alignment & Qt::AlignHCenter) left += (line.width() - metrics.horizontalAdvance(text)) / 2;
  // All texts on one base line: a glyph out of a taller font shall not move its row's text.
  const int baseLine = line.top() + (line.height() + metrics.ascent() - metrics.descent()) / 2;
  painter.setPen(cell.ink);
  painter.drawText(left, baseLine, text);
}

void paintRuling(QPainter& painter, const QRect& area, const QColor& color) {
  painter.fillRect(QRect(area.left(), area.bottom(), area.width(), 1), color);
}

/// The cell's own ground where it has one, with an ink that can be read on it.
void takeOwnColor(const QVariant& value, Cell& cell) {
  const FormColor own = value.toInt();
  if (own < 0) return;
  cell.ground = resolved(own, QPalette(), QPalette::Base);
  cell.ink = readableOn(cell.ground);
}

QColor mixed(const QColor& a, const QColor& b, double share) {
  return QColor::fromRgbF(static_cast<float>(a.redF() * (1 - share) + b.redF() * share),
                          static_cast<float>(a.greenF() * (1 - share) + b.greenF() * share),
                          static_cast<float>(a.blueF() * (1 - share) + b.blueF() * share));
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
  const QPalette& colors = option.palette;
  Cell cell{option.rect,
            index.data(Qt::DisplayRole).toString(),
            index.data(Qt::DecorationRole).value<QIcon>(),
            index.data(Qt::TextAlignmentRole).value<Qt::Alignment>(),
            colors.color(QPalette::Base),
            colors.color(QPalette::Text)};
  const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
  if (view != nullptr && view->currentIndex().row() == index.row())
    cell.ground = mixed(cell.ground, colors.color(QPalette::Highlight), 0.14);
  takeOwnColor(index.data(FlexGridModel::OwnColorRole), cell);
  painter->save();
  painter->setFont(option.font);
  paintCell(*painter, cell);
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
  const auto value = [this, column](int role) { return model()->headerData(column, orientation(), role); };
  const QPalette colors = palette();
  const bool sorted = isSortIndicatorShown() && sortIndicatorSection() == column;
  Cell cell{rect,
            value(Qt::DisplayRole).toString(),
            {},
            value(Qt::TextAlignmentRole).value<Qt::Alignment>(),
            colors.color(QPalette::Base),
            colors.color(QPalette::Text)};
  takeOwnColor(value(FlexGridModel::OwnColorRole), cell);
  painter->save();
  painter->setFont(font());
  painter->fillRect(rect, cell.ground);
  if (sorted) cell.area.adjust(0, 0, -FlexGridHeader::arrowRoom, 0);
  paintCell(*painter, cell);
  if (sorted) paintSortArrow(*painter, rect, sortIndicatorOrder(), theme::accent());
  const QColor line = colors.color(QPalette::Mid);
  paintRuling(*painter, rect, line);
  painter->fillRect(QRect(rect.right(), rect.top() + 5, 1, rect.height() - 10), line);
  painter->restore();
}

}  // namespace orvanta
