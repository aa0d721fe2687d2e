#include "ui/flex_grid.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QToolTip>
#include <cmath>

#include "ui/flex_grid_paint.h"
#include "ui/twips.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int rowPixels = 24;
constexpr qsizetype longestToolTip = 2000;

bool isSideways(const QWheelEvent& event) {
  return event.angleDelta().y() == 0 || (event.modifiers() & (Qt::ShiftModifier | Qt::AltModifier));
}

}  // namespace

FlexGrid::FlexGrid(const QString& designName, const QString& accessibleName, QWidget* parent)
    : QTableView(parent), m_model(new FlexGridModel(this)) {
  setObjectName(designName);
  setAccessibleName(accessibleName);
  setItemDelegate(new FlexGridDelegate(this));
  setHorizontalHeader(new FlexGridHeader(this));
  setModel(m_model);
  m_model->setRows(2);

  setShowGrid(false);
  setSelectionMode(NoSelection);
  setEditTriggers(NoEditTriggers);
  setTabKeyNavigation(false);
  setAutoScroll(false);  // the current cell follows the mouse, and the view shall not follow it
  setWordWrap(false);
  setCornerButtonEnabled(false);
  setVerticalScrollMode(ScrollPerItem);
  setHorizontalScrollMode(ScrollPerPixel);
  setMouseTracking(true);
  viewport()->setMouseTracking(true);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setMinimumSectionSize(rowPixels);
  verticalHeader()->setDefaultSectionSize(rowPixels);
  horizontalHeader()->setFixedHeight(rowPixels);
  horizontalHeader()->setMinimumSectionSize(16);
  horizontalHeader()->viewport()->setMouseTracking(true);
  horizontalHeader()->viewport()->installEventFilter(this);
  verticalScrollBar()->installEventFilter(this);

  connect(m_model, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
    m_topBeforeReset = TopRow();
    m_shownBeforeReset = m_model->rowCount();
  });
  connect(m_model, &QAbstractItemModel::modelReset, this, &FlexGrid::restoreView);
  // Only presses that do not resize a column come here; the filter below sees all others.
  connect(horizontalHeader(), &QHeaderView::sectionPressed, this, [this](int column) {
    pointAt(0, column, Qt::LeftButton);
    Q_EMIT MouseDown(Qt::LeftButton);
  });
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) {
    pointAt(0, column, Qt::NoButton);
    Q_EMIT Click();
  });
  connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column, int, int size) {
    if (column < Cols()) m_widths[static_cast<size_t>(column)] = size * twipsPerPixel;
  });
}

void FlexGrid::setCols(int cols) {
  m_widths.resize(static_cast<size_t>(std::max(cols, 0)),
                  horizontalHeader()->defaultSectionSize() * twipsPerPixel);
  m_model->setColumns(cols);
}

void FlexGrid::setCurrentCell(int row, int col) {
  if (row < 0 || row >= Rows() || col < 0 || col >= Cols()) return;
  m_row = row;
  m_col = col;
  if (!m_redraw) return;
  const int inView = m_model->viewRow(row);
  const int before = currentIndex().row();
  setCurrentIndex(inView < 0 ? QModelIndex() : m_model->index(inView, col));
  if (before == inView) return;
  for (const int tinted : {before, inView}) {
    if (tinted >= 0) viewport()->update(0, rowViewportPosition(tinted), viewport()->width(), rowPixels);
  }
}

int FlexGrid::ColWidth(int col) const {
  return col >= 0 && col < Cols() ? m_widths[static_cast<size_t>(col)] : 0;
}

void FlexGrid::setColWidth(int col, int twips) {
  if (col < 0 || col >= Cols()) return;
  setColumnWidth(col, pixels(twips));
  m_widths[static_cast<size_t>(col)] = twips;
}

int FlexGrid::RowHeight(int row) const {
  return row < 0 || row >= Rows() || m_model->isHidden(row) ? 0 : rowPixels * twipsPerPixel;
}

void FlexGrid::setRowHeight(int row, int twips) {
  if (row > 0) m_model->setHidden(row, twips == 0);
}

int FlexGrid::Height() const {
  return height() * twipsPerPixel;
}

void FlexGrid::setSort(int code) {
  if (code < 3 || code > 6) return;
  const bool descending = code % 2 == 0;
  m_model->sortRows(m_col, code < 5, descending);
  horizontalHeader()->setSortIndicatorShown(true);
  horizontalHeader()->setSortIndicator(m_col, descending ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void FlexGrid::setRedraw(bool redraw) {
  m_redraw = redraw;
  if (!redraw) {
    m_model->freeze();
    return;
  }
  m_model->thaw();
  setCurrentCell(m_row, m_col);
}

/// The view forgets these when the rows under it change as a whole.
void FlexGrid::restoreView() {
  for (int col = 0; col < std::min(Cols(), static_cast<int>(m_widths.size())); ++col)
    setColumnWidth(col, pixels(m_widths[static_cast<size_t>(col)]));
  m_row = std::clamp(m_row, 0, std::max(Rows() - 1, 0));
  if (m_redraw) setCurrentCell(m_row, m_col);
  setTopRow(m_topBeforeReset);
  if (m_model->rowCount() == m_shownBeforeReset) return;
  // Fewer rows than before shall not stand above the view while there is room for them in it.
  const int lastFullPage = std::max(0, m_model->rowCount() - viewport()->height() / rowPixels);
  verticalScrollBar()->setValue(std::min(verticalScrollBar()->value(), lastFullPage));
}

int FlexGrid::TopRow() const {
  const int row = m_model->row(verticalScrollBar()->value());
  return row > 0 ? row : 1;
}

void FlexGrid::setTopRow(int row) {
  // The range of the bar is worked out with the layout, which waits for the next turn of the event loop.
  executeDelayedItemsLayout();
  verticalScrollBar()->setValue(m_model->viewRowFrom(row));
}

/// The view would stop at the last full page.
void FlexGrid::updateGeometries() {
  QTableView::updateGeometries();
  if (verticalScrollBar()->maximum() > 0) verticalScrollBar()->setMaximum(m_model->rowCount() - 1);
}

bool FlexGrid::RowIsVisible(int row) const {
  if (row == 0) return Rows() > 0;
  const int inView = m_model->viewRow(row);
  if (inView < 0) return false;
  const int top = rowViewportPosition(inView);
  return top >= 0 && top < viewport()->height();
}

int FlexGrid::TextWidth(const QString& text) const {
  return static_cast<int>(std::ceil(QFontMetricsF(font()).horizontalAdvance(text))) * twipsPerPixel;
}

int FlexGrid::HeaderRoom() {
  return FlexGridHeader::arrowRoom * twipsPerPixel;
}

QRect FlexGrid::cellArea(int row, int col) const {
  if (row == 0)
    return {horizontalHeader()->sectionViewportPosition(col), 0, columnWidth(col),
            horizontalHeader()->height()};
  return visualRect(m_model->index(m_model->viewRow(row), col));
}

QPoint FlexGrid::menuPlace() const {
  const QWidget* over = m_row == 0 ? horizontalHeader()->viewport() : viewport();
  const QRect cell = cellArea(m_row, m_col).intersected(over->rect());
  return over->mapToGlobal(cell.isEmpty() ? QPoint() : cell.bottomLeft());
}

void FlexGrid::pointAt(int row, int col, Qt::MouseButtons buttons) {
  m_mouseRow = row;
  m_mouseCol = col;
  Q_EMIT MouseMove(buttons);
}

void FlexGrid::pointAtPlace(QPoint inViewport, Qt::MouseButtons buttons) {
  const QModelIndex index = indexAt(inViewport);
  if (index.isValid()) {
    pointAt(m_model->row(index.row()), index.column(), buttons);
  } else {
    pointAt(-1, -1, buttons);
  }
}

void FlexGrid::mousePressEvent(QMouseEvent* event) {
  pointAtPlace(event->position().toPoint(), event->buttons());
  m_pressRow = m_mouseRow;
  m_pressCol = m_mouseCol;
  // Beside the rows it means the current one, if that can be seen.
  if (m_mouseRow < 0 && leaveHiddenRow()) return;
  Q_EMIT MouseDown(event->button());
}

void FlexGrid::mouseMoveEvent(QMouseEvent* event) {
  pointAtPlace(event->position().toPoint(), event->buttons());
}

void FlexGrid::mouseReleaseEvent(QMouseEvent* event) {
  pointAtPlace(event->position().toPoint(), event->buttons());
  const bool sameCell = m_mouseRow >= 0 && m_mouseRow == m_pressRow && m_mouseCol == m_pressCol;
  m_pressRow = -1;
  if (sameCell && event->button() == Qt::LeftButton) Q_EMIT Click();
}

void FlexGrid::mouseDoubleClickEvent(QMouseEvent* event) {
  mousePressEvent(event);
}

void FlexGrid::contextMenuEvent(QContextMenuEvent* event) {
  // The mouse's own way to a menu is the press.
  if (event->reason() == QContextMenuEvent::Keyboard && !leaveHiddenRow()) Q_EMIT MenuKey();
  event->accept();
}

void FlexGrid::wheelEvent(QWheelEvent* event) {
  if (isSideways(*event)) {
    QTableView::wheelEvent(event);
    return;
  }
  Q_EMIT MouseWheel(event->angleDelta().y(), event->globalPosition().toPoint());
  // Over the header or the scroll bar the pointer's cell stays what it was.
  const QPoint inViewport = viewport()->mapFromGlobal(event->globalPosition().toPoint());
  if (viewport()->rect().contains(inViewport)) pointAtPlace(inViewport, event->buttons());
  event->accept();
}

/// The row that a key goes to from the current one: among those that are shown, and the header.
int FlexGrid::keyTarget(int key) const {
  const int shown = m_model->rowCount();
  const int here = m_row == 0 ? -1 : m_model->viewRowFrom(m_row);
  const int page = std::max(1, viewport()->height() / rowPixels - 1);
  // From a hidden row, `here` is the next one that is shown: one step down already.
  const int above = m_row > 0 && m_model->viewRow(m_row) < 0 ? here - 1 : here;
  int target = here;
  if (key == Qt::Key_Up) target = here - 1;
  if (key == Qt::Key_Down) target = above + 1;
  if (key == Qt::Key_PageUp) target = std::max(here - page, 0);
  if (key == Qt::Key_PageDown) target = above + page;
  if (key == Qt::Key_Home) target = 0;
  if (key == Qt::Key_End) target = shown - 1;
  return m_model->row(std::min(target, shown - 1));
}

/// Where the current row is hidden, points at the first one that is shown instead, if there is any: a key
/// shall not act on what the user does not see. Returns whether the row was hidden.
bool FlexGrid::leaveHiddenRow() {
  if (m_row == 0 || m_model->viewRow(m_row) >= 0) return false;
  if (m_model->rowCount() > 0) {
    const int col = m_col;
    pointAt(m_model->row(0), col, Qt::NoButton);
    scrollTo(m_model->index(0, col));
  }
  return true;
}

void FlexGrid::keyPressEvent(QKeyEvent* event) {
  int row = m_row;
  int col = m_col;
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      if (leaveHiddenRow()) return;
      pointAt(m_row, m_col, Qt::NoButton);
      if (m_row > 0) {
        Q_EMIT MenuKey();
      } else {
        Q_EMIT Click();
        // Sorting leads to the first column; the next press of the key shall find this one.
        pointAt(row, col, Qt::NoButton);
      }
      return;
    case Qt::Key_Left:
      col = std::max(col - 1, 0);
      break;
    case Qt::Key_Right:
      col = std::min(col + 1, Cols() - 1);
      break;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
      row = keyTarget(event->key());
      break;
    default:
      event->ignore();
      return;
  }
  pointAt(row, col, Qt::NoButton);
  const int inView = m_model->viewRow(row);
  if (inView >= 0) scrollTo(m_model->index(inView, col));
}

void FlexGrid::showToolTip(QPoint place, QWidget* over) {
  if (m_toolTip.isEmpty()) {
    QToolTip::hideText();
    return;
  }
  // As rich text it is broken into lines.
  QString text = m_toolTip.left(longestToolTip).trimmed().toHtmlEscaped();
  if (m_toolTip.size() > longestToolTip) text += QChar(0x2026);
  QToolTip::showText(place, u"<p style='white-space:pre-wrap'>%1</p>"_s.arg(text), over);
}

bool FlexGrid::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    showToolTip(static_cast<QHelpEvent*>(event)->globalPos(), viewport());
    return true;
  }
  return QTableView::viewportEvent(event);
}

bool FlexGrid::eventFilter(QObject* watched, QEvent* event) {
  const bool overHeader = watched == horizontalHeader()->viewport();
  if (event->type() == QEvent::Wheel && (overHeader || watched == verticalScrollBar())) {
    auto* wheel = static_cast<QWheelEvent*>(event);
    // The view hands some sideways turns to the bar itself.
    if (!overHeader && isSideways(*wheel)) return false;
    wheelEvent(wheel);
    return true;
  }
  if (!overHeader) return QTableView::eventFilter(watched, event);
  const auto columnOf = [this](const QMouseEvent* mouse) {
    return horizontalHeader()->logicalIndexAt(mouse->position().toPoint());
  };
  const auto pointAtColumn = [this](int column, Qt::MouseButtons buttons) {
    pointAt(column < 0 ? -1 : 0, column, buttons);
  };
  if (event->type() == QEvent::MouseMove) {
    const auto* mouse = static_cast<QMouseEvent*>(event);
    pointAtColumn(columnOf(mouse), mouse->buttons());
  } else if (event->type() == QEvent::MouseButtonPress) {
    const auto* mouse = static_cast<QMouseEvent*>(event);
    if (mouse->button() == Qt::LeftButton) return false;
    pointAtColumn(columnOf(mouse), mouse->buttons());
    if (m_mouseRow < 0 && leaveHiddenRow()) return true;
    Q_EMIT MouseDown(mouse->button());
    return true;
  } else if (event->type() == QEvent::ToolTip) {
    showToolTip(static_cast<QHelpEvent*>(event)->globalPos(), horizontalHeader()->viewport());
    return true;
  } else if (event->type() == QEvent::ContextMenu) {
    return true;
  }
  return false;
}

}  // namespace orvanta
