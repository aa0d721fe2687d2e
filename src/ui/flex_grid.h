#pragma once

#include <QCheckBox>
#include <QTableView>

#include "text/text.h"
#include "ui/check_header.h"
#include "ui/color.h"
#include "ui/flex_grid_rows.h"

namespace orvanta {

/// A grid of records with one header row, row 0, and a current cell. Rows keep their numbers while a search
/// hides them. The pointer's cell is that of the mouse, or the one that the arrow keys went to.
class FlexGrid : public QTableView {
  Q_OBJECT

 public:
  static constexpr int rowPixels = 24;

  /// `records` has the roles of `FlexGridRows`.
  FlexGrid(const QString& designName, const Text& accessibleName, QAbstractItemModel* records,
           QWidget* parent);

  int Rows() const { return m_rows->rows(); }
  int Cols() const { return m_rows->columnCount(); }
  const FlexGridRows& rows() const { return *m_rows; }

  /// The current cell. Setting one coordinate keeps the other.
  int Row() const { return m_row; }
  int Col() const { return m_col; }
  void setRow(int row) { setCurrentCell(row, m_col); }
  void setCol(int col) { setCurrentCell(m_row, col); }
  /// The end of the selection, which is always the current cell.
  int RowSel() const { return m_row; }
  int ColSel() const { return m_col; }

  /// The pointer's cell; -1 if it is over none.
  int MouseRow() const { return m_mouse.row; }
  int MouseCol() const { return m_mouse.col; }

  /// The whole text of a cell, in row 0 the heading.
  QString TextMatrix(int row, int col) const;

  /// Sorts all rows below the header by the current column: 3 and 4 by number, up and down; 5 and 6 by the
  /// text.
  void setSort(int code);
  /// Hides all rows except the `wanted` records.
  void showOnly(const std::function<bool(int record)>& wanted);

  /// Shows a check box at each row: `isChecked` tells of a record whether it is checked, `iconOf` which icon
  /// stands beside the box; a null one is none. `CheckPressed` and `CheckAllPressed` come when one of the
  /// boxes, or the one above them all, is pressed.
  void showChecks(std::function<bool(int record)> isChecked, std::function<QIcon(int record)> iconOf);
  /// What is checked has changed; `all` is the box above them.
  void checksChanged(Qt::CheckState all);
  /// Icons have changed; there is room for them if there are `any`.
  void iconsChanged(bool any);

  /// Gives one cell its own background and takes it from the previous one.
  void setCellBackColor(int row, int col, FormColor color);
  /// The cell with its own background.
  std::optional<QColor> CellBackColor(int row, int col) const;

  /// What is shown in the place of rows when a search has hidden them all.
  void setToldWhenEmpty(const QString& text);

  /// A text for the owner's use.
  QString Tag;

  /// The row drawn on top, below the header. The last page is a full one, so later rows cannot be on top.
  int TopRow() const;
  void setTopRow(int row);
  /// Whether some of the row is in view.
  bool RowIsVisible(int row) const;
  /// A page of the shown rows, up or down.
  void turnPage(bool up);

  /// Where a cell is, in the viewport's coordinates; for the header row in the header's.
  QRect cellArea(int row, int col) const;
  /// Where on the screen a menu for the current cell opens.
  QPoint menuPlace() const;
  /// The width of frame and scroll bar, in pixels.
  int besideColumns() const;

 Q_SIGNALS:
  /// The left button went down and up on one cell, or a key did the same.
  void Click();
  void MouseDown(Qt::MouseButton Button);
  void MouseMove(Qt::MouseButtons Button);
  /// The wheel turned by eighths of a degree, up positive, with the pointer at a place on the screen.
  void MouseWheel(int turn, QPoint place);
  /// The menu key.
  void MenuKey();
  void CheckPressed(int record);
  void CheckAllPressed(bool checked);

 protected:
  void updateGeometries() override;
  void paintEvent(QPaintEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Cell {
    int row = -1;
    int col = -1;
    bool operator==(const Cell&) const = default;
  };

  void setCurrentCell(int row, int col);
  void afterRearranging(int top);
  void pointAt(Cell cell, Qt::MouseButtons buttons);
  void press(const QWidget* over, const QMouseEvent& event);
  Cell cellAt(const QWidget* over, QPoint place) const;
  std::optional<Cell> keyTarget(int key) const;
  bool leaveHiddenRow();
  void alignTopRow();

  FlexGridRows* m_rows;
  CheckHeader* m_checks;
  QWidget* m_corner;
  QCheckBox* m_checkAll;
  QString m_toldWhenEmpty;
  int m_row = 1;
  int m_col = 0;
  Cell m_mouse;
  Cell m_press;
  Cell m_colored;
  FormColor m_color = systemButtonFace;
};

}  // namespace orvanta
