#include "ui/flex_grid.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include "text/text.h"
#include "ui/flex_grid_paint.h"
#include "ui/tool_tip.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

bool isSideways(const QWheelEvent& event) {
  return event.angleDelta().y() == 0 || (event.modifiers() & (Qt::ShiftModifier | Qt::AltModifier));
}

}  // namespace

FlexGrid::FlexGrid(const QString& designName, const Text& accessibleName, QAbstractItemModel* records,
                   QWidget* parent)
    : QTableView(parent),
      m_rows(new FlexGridRows(records, this)),
      m_checks(new CheckHeader(this)),
      m_corner(new QWidget(this)),
      m_checkAll(new QCheckBox(m_corner)) {
  setObjectName(designName);
  setItemDelegate(new FlexGridDelegate(this));
  setHorizontalHeader(new FlexGridHeader(this));
  setVerticalHeader(m_checks);
  setModel(m_rows);

  setShowGrid(false);
  setSelectionMode(NoSelection);
  setTabKeyNavigation(false);
  setAutoScroll(false);  // the current cell follows the mouse, but the view must not
  setVerticalScrollMode(ScrollPerItem);
  setHorizontalScrollMode(ScrollPerPixel);
  viewport()->setMouseTracking(true);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setMinimumSectionSize(rowPixels);
  verticalHeader()->setDefaultSectionSize(rowPixels);
  setCornerButtonEnabled(false);
  m_checkAll->setObjectName(QStringLiteral("checkAll"));
  worded(this, [this, accessibleName] {
    setAccessibleName(accessibleName.shown());
    m_checkAll->setAccessibleName(inFace(u"全选"_s, u"Check all"_s));
    m_checkAll->setToolTip(inFace(u"全选或全不选显示的应用"_s, u"Check all or none of the apps shown"_s));
  });
  m_corner->setBackgroundRole(QPalette::Base);
  m_corner->setAutoFillBackground(true);
  m_corner->hide();
  horizontalHeader()->setFixedHeight(rowPixels);
  horizontalHeader()->setMinimumSectionSize(16);
  horizontalHeader()->viewport()->setMouseTracking(true);
  horizontalHeader()->viewport()->installEventFilter(this);
  verticalScrollBar()->installEventFilter(this);

  // Only presses that do not resize a column arrive here; the filter below sees all others.
  connect(horizontalHeader(), &QHeaderView::sectionPressed, this, [this](int column) {
    pointAt({0, column}, Qt::LeftButton);
    Q_EMIT MouseDown(Qt::LeftButton);
  });
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) {
    pointAt({0, column}, Qt::NoButton);
    Q_EMIT Click();
  });
}

void FlexGrid::showChecks(std::function<bool(int record)> isChecked,
                          std::function<QIcon(int record)> iconOf) {
  m_checks->iconOf = [this, iconOf = std::move(iconOf)](int viewRow) {
    return iconOf(m_rows->record(m_rows->row(viewRow)));
  };
  m_checks->isChecked = [this, isChecked = std::move(isChecked)](int viewRow) {
    return isChecked(m_rows->record(m_rows->row(viewRow)));
  };
  connect(m_checks, &CheckHeader::toggled, this,
          [this](int viewRow) { Q_EMIT CheckPressed(m_rows->record(m_rows->row(viewRow))); });
  connect(m_checkAll, &QCheckBox::clicked, this, &FlexGrid::CheckAllPressed);
  m_checks->show();
  m_corner->show();
}

void FlexGrid::setToldWhenEmpty(const QString& text) {
  m_toldWhenEmpty = text;
  viewport()->update();
}

void FlexGrid::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (m_rows->rowCount() > 0) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, m_toldWhenEmpty);
}

void FlexGrid::checksChanged(Qt::CheckState all) {
  m_checkAll->setTristate(all == Qt::PartiallyChecked);
  m_checkAll->setCheckState(all);
  m_checks->viewport()->update();
}

void FlexGrid::iconsChanged(bool any) {
  m_checks->showIcons(any);
  m_checks->viewport()->update();
  updateGeometries();
}

QString FlexGrid::TextMatrix(int row, int col) const {
  if (row == 0) return m_rows->headerData(col, Qt::Horizontal, Qt::DisplayRole).toString();
  return m_rows->sourceModel()->index(m_rows->record(row), col).data(FlexGridRows::TextRole).toString();
}

void FlexGrid::setCurrentCell(int row, int col) {
  if (row < 0 || row >= Rows() || col < 0 || col >= Cols()) return;
  m_row = row;
  m_col = col;
  const int inView = m_rows->viewRow(row);
  const int before = currentIndex().row();
  setCurrentIndex(m_rows->index(inView, col));
  if (before == inView) return;
  for (const int tinted : {before, inView}) {
    if (tinted >= 0) viewport()->update(0, rowViewportPosition(tinted), viewport()->width(), rowPixels);
  }
}

void FlexGrid::setSort(int code) {
  if (code < 3 || code > 6) return;
  const int top = TopRow();
  const Qt::SortOrder direction = code % 2 == 0 ? Qt::DescendingOrder : Qt::AscendingOrder;
  m_rows->sortBy(m_col, code < 5 ? FlexGridRows::ValueRole : FlexGridRows::TextRole, direction);
  horizontalHeader()->setSortIndicatorShown(true);
  horizontalHeader()->setSortIndicator(m_col, direction);
  afterRearranging(top);
}

void FlexGrid::showOnly(const std::function<bool(int record)>& wanted) {
  const int top = TopRow();
  m_rows->showOnly(wanted);
  afterRearranging(top);
}

/// The view forgets these when its rows change.
void FlexGrid::afterRearranging(int top) {
  setCurrentCell(m_row, m_col);
  setTopRow(top);
}

void FlexGrid::setCellBackColor(int row, int col, FormColor color) {
  const auto repaint = [this](Cell cell) {
    QWidget* over = cell.row == 0 ? horizontalHeader()->viewport() : viewport();
    over->update(cellArea(cell.row, cell.col));
  };
  repaint(m_colored);
  m_colored = {row, col};
  m_color = color;
  repaint(m_colored);
}

std::optional<QColor> FlexGrid::CellBackColor(int row, int col) const {
  if (m_colored != Cell{row, col}) return std::nullopt;
  return resolved(m_color, palette(), QPalette::Base);
}

int FlexGrid::TopRow() const {
  return std::max(1, m_rows->row(rowAt(0)));
}

void FlexGrid::setTopRow(int row) {
  // The bar's range is computed with the layout, which waits for the next turn of the event loop.
  executeDelayedItemsLayout();
  verticalScrollBar()->setValue(m_rows->viewRowFrom(row));
}

bool FlexGrid::RowIsVisible(int row) const {
  if (row == 0) return true;
  const int inView = m_rows->viewRow(row);
  if (inView < 0) return false;
  const int top = rowViewportPosition(inView);
  return top >= 0 && top < viewport()->height();
}

void FlexGrid::turnPage(bool up) {
  verticalScrollBar()->triggerAction(up ? QAbstractSlider::SliderPageStepSub
                                        : QAbstractSlider::SliderPageStepAdd);
}

/// At its end the view would put the last row at the bottom and part of a row on top.
void FlexGrid::alignTopRow() {
  const int before = verticalHeader()->offset();
  verticalHeader()->setOffsetToSectionPosition(verticalScrollBar()->value());
  if (verticalHeader()->offset() != before) viewport()->update();
}

void FlexGrid::updateGeometries() {
  QTableView::updateGeometries();
  alignTopRow();
  m_corner->setGeometry(frameWidth(), frameWidth(), m_checks->width(), horizontalHeader()->height() - 1);
  const QRect box(QPoint(), m_checkAll->sizeHint());
  m_checkAll->setGeometry(box.translated(m_checks->boxArea(m_corner->rect()).center() - box.center()));
}

void FlexGrid::scrollContentsBy(int dx, int dy) {
  QTableView::scrollContentsBy(dx, dy);
  alignTopRow();
}

QRect FlexGrid::cellArea(int row, int col) const {
  if (row == 0)
    return {horizontalHeader()->sectionViewportPosition(col), 0, columnWidth(col),
            horizontalHeader()->height()};
  return visualRect(m_rows->index(m_rows->viewRow(row), col));
}

QPoint FlexGrid::menuPlace() const {
  const QWidget* over = m_row == 0 ? horizontalHeader()->viewport() : viewport();
  const QRect cell = cellArea(m_row, m_col).intersected(over->rect());
  return over->mapToGlobal(cell.isEmpty() ? QPoint() : cell.bottomLeft());
}

int FlexGrid::besideColumns() const {
  const int checks = m_checks->isVisibleTo(this) ? m_checks->width() : 0;
  return 2 * frameWidth() + checks + verticalScrollBar()->sizeHint().width();
}

void FlexGrid::pointAt(Cell cell, Qt::MouseButtons buttons) {
  m_mouse = cell;
  Q_EMIT MouseMove(buttons);
}

FlexGrid::Cell FlexGrid::cellAt(const QWidget* over, QPoint place) const {
  if (over != viewport()) {
    const int column = horizontalHeader()->logicalIndexAt(place);
    return column < 0 ? Cell() : Cell{0, column};
  }
  const QModelIndex index = indexAt(place);
  return index.isValid() ? Cell{m_rows->row(index.row()), index.column()} : Cell();
}

void FlexGrid::press(const QWidget* over, const QMouseEvent& event) {
  pointAt(cellAt(over, event.position().toPoint()), event.buttons());
  m_press = m_mouse;
  // Outside the rows it means the current row, if that is visible.
  if (m_mouse == Cell() && leaveHiddenRow()) return;
  Q_EMIT MouseDown(event.button());
}

void FlexGrid::mousePressEvent(QMouseEvent* event) {
  press(viewport(), *event);
}

void FlexGrid::mouseDoubleClickEvent(QMouseEvent* event) {
  press(viewport(), *event);
}

void FlexGrid::mouseMoveEvent(QMouseEvent* event) {
  pointAt(cellAt(viewport(), event->position().toPoint()), event->buttons());
}

void FlexGrid::mouseReleaseEvent(QMouseEvent* event) {
  pointAt(cellAt(viewport(), event->position().toPoint()), event->buttons());
  const bool sameCell = m_mouse != Cell() && m_mouse == std::exchange(m_press, Cell());
  if (sameCell && event->button() == Qt::LeftButton) Q_EMIT Click();
}

void FlexGrid::contextMenuEvent(QContextMenuEvent* event) {
  // With the mouse, the press opens the menu.
  if (event->reason() == QContextMenuEvent::Keyboard && !leaveHiddenRow()) Q_EMIT MenuKey();
  event->accept();
}

void FlexGrid::wheelEvent(QWheelEvent* event) {
  if (isSideways(*event)) {
    QTableView::wheelEvent(event);
    return;
  }
  Q_EMIT MouseWheel(event->angleDelta().y(), event->globalPosition().toPoint());
  // Over the header or the scroll bar the pointer's cell does not change.
  const QPoint inViewport = viewport()->mapFromGlobal(event->globalPosition().toPoint());
  if (viewport()->rect().contains(inViewport)) pointAt(cellAt(viewport(), inViewport), event->buttons());
  event->accept();
}

/// Where a key moves from the current cell, among the shown rows and the header.
std::optional<FlexGrid::Cell> FlexGrid::keyTarget(int key) const {
  const int last = m_rows->rowCount() - 1;
  const int here = m_row == 0 ? -1 : m_rows->viewRowFrom(m_row);
  const int page = std::max(1, viewport()->height() / rowPixels - 1);
  // From a hidden row, `here` is the next one that is shown: one step down already.
  const int above = m_row > 0 && m_rows->viewRow(m_row) < 0 ? here - 1 : here;
  const auto shown = [&](int viewRow) { return Cell{m_rows->row(std::min(viewRow, last)), m_col}; };
  if (key == Qt::Key_Left) return Cell{m_row, std::max(m_col - 1, 0)};
  if (key == Qt::Key_Right) return Cell{m_row, std::min(m_col + 1, Cols() - 1)};
  if (key == Qt::Key_Up) return shown(here - 1);
  if (key == Qt::Key_Down) return shown(above + 1);
  if (key == Qt::Key_PageUp) return shown(std::max(here - page, 0));
  if (key == Qt::Key_PageDown) return shown(above + page);
  if (key == Qt::Key_Home) return shown(0);
  if (key == Qt::Key_End) return shown(last);
  return std::nullopt;
}

/// If the current row is hidden, moves to the first shown one after it, if any: a key must not act on what
/// the user does not see. Returns whether the row was hidden.
bool FlexGrid::leaveHiddenRow() {
  if (m_row == 0 || m_rows->viewRow(m_row) >= 0) return false;
  if (m_rows->rowCount() > 0) {
    const int col = m_col;
    pointAt({m_rows->row(0), col}, Qt::NoButton);
    scrollTo(m_rows->index(0, col));
  }
  return true;
}

void FlexGrid::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_Space && event->modifiers() == Qt::ControlModifier) {
    if (!leaveHiddenRow() && m_row > 0) Q_EMIT CheckPressed(m_rows->record(m_row));
  } else if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
    if (leaveHiddenRow()) return;
    const Cell cell{m_row, m_col};
    pointAt(cell, Qt::NoButton);
    if (cell.row > 0) {
      Q_EMIT MenuKey();
    } else {
      Q_EMIT Click();
      // Sorting moves to the first column; the next press of the key is for this one.
      pointAt(cell, Qt::NoButton);
    }
  } else if (const auto target = keyTarget(key)) {
    pointAt(*target, Qt::NoButton);
    scrollTo(m_rows->index(m_rows->viewRow(target->row), target->col));
  } else {
    event->ignore();
  }
}

bool FlexGrid::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QTableView::event(event);
  showToolTip(static_cast<QHelpEvent*>(event)->globalPos(), toolTip(), this);
  return true;
}

bool FlexGrid::eventFilter(QObject* watched, QEvent* event) {
  QWidget* header = horizontalHeader()->viewport();
  const auto mouse = [event]() -> const QMouseEvent& { return *static_cast<QMouseEvent*>(event); };
  switch (watched == header || event->type() == QEvent::Wheel ? event->type() : QEvent::None) {
    case QEvent::Wheel: {
      auto* wheel = static_cast<QWheelEvent*>(event);
      // The view passes some sideways turns to the bar itself.
      if (watched != header && isSideways(*wheel)) return false;
      wheelEvent(wheel);
      return true;
    }
    case QEvent::MouseMove:
      pointAt(cellAt(header, mouse().position().toPoint()), mouse().buttons());
      return false;
    case QEvent::MouseButtonPress:
      if (mouse().button() == Qt::LeftButton) return false;
      press(header, mouse());
      return true;
    default:
      return QTableView::eventFilter(watched, event);
  }
}

}  // namespace orvanta
