#pragma once

#include <QTableView>

#include "ui/flex_grid_model.h"

namespace orvanta {

/// The code for the ground that the grid gives its cells.
inline constexpr FormColor systemWindow = static_cast<FormColor>(0x80000005u);

/// A grid of texts with one header row, row 0, and a current cell. Rows keep their numbers while they are
/// hidden, which is what a height of 0 does, and take part in sorting. Widths and heights are twips.
///
/// The pointer's cell is that of the mouse, or the one that the arrow keys went to.
class FlexGrid : public QTableView {
  Q_OBJECT

 public:
  /// Two rows, no columns.
  FlexGrid(const QString& designName, const QString& accessibleName, QWidget* parent);

  int Rows() const { return m_model->rows(); }
  void setRows(int rows) { m_model->setRows(rows); }
  int Cols() const { return m_model->columns(); }
  void setCols(int cols);
  static constexpr int FixedRows() { return 1; }
  static constexpr int FixedCols() { return 0; }

  /// The current cell. Setting one of the two keeps the other.
  int Row() const { return m_row; }
  int Col() const { return m_col; }
  void setRow(int row) { setCurrentCell(row, m_col); }
  void setCol(int col) { setCurrentCell(m_row, col); }
  /// The end of the selection, which is always the current cell.
  int RowSel() const { return m_row; }
  int ColSel() const { return m_col; }

  /// The pointer's cell, -1 when it is over none.
  int MouseRow() const { return m_mouseRow; }
  int MouseCol() const { return m_mouseCol; }

  QString TextMatrix(int row, int col) const { return m_model->text(row, col); }
  void setTextMatrix(int row, int col, const QString& text) { m_model->setText(row, col, text); }

  int ColWidth(int col) const;
  void setColWidth(int col, int twips);
  int RowHeight(int row) const;
  /// 0 hides the row, anything else shows it at the height that all rows have. The header always shows.
  void setRowHeight(int row, int twips);
  int Height() const;
  void setColAlignment(int col, Qt::Alignment alignment) { m_model->setAlignment(col, alignment); }

  /// Sorts all rows below the header by the current column: 3 and 4 by the number that a cell begins with, up
  /// and down; 5 and 6 by the text without regard to case.
  void setSort(int code);

  FormColor BackColor() const { return systemWindow; }
  FormColor CellBackColor() const { return m_model->color(m_row, m_col); }
  void setCellBackColor(FormColor color) { m_model->setColor(m_row, m_col, color); }
  void setCellPicture(const QIcon& picture) { m_model->setPicture(m_row, m_col, picture); }

  /// While false, changes are not shown.
  bool Redraw() const { return m_redraw; }
  void setRedraw(bool redraw);

  /// A text of the owner's.
  QString Tag;
  QString ToolTipText() const { return m_toolTip; }
  void setToolTipText(const QString& text) { m_toolTip = text; }

  /// The first row in view below the header. Any row can be it, also one that leaves less than a page.
  int TopRow() const;
  void setTopRow(int row);
  bool RowIsVisible(int row) const;

  /// The width of `text` in the grid's font, in whole pixels that hold all of it.
  int TextWidth(const QString& text) const;
  /// What a column has to be wide besides a header text, for the arrow that shows the sort order.
  static int HeaderRoom();
  /// Where a cell is, in the viewport's coordinates; for the header row in the header's.
  QRect cellArea(int row, int col) const;
  /// The place on the screen from which a menu for the current cell drops.
  QPoint menuPlace() const;

 Q_SIGNALS:
  /// The left button went down and up on one cell, or a key did the same.
  void Click();
  void MouseDown(Qt::MouseButton Button);
  void MouseMove(Qt::MouseButtons Button);
  /// The wheel turned by eighths of a degree, up positive, with the pointer at a place on the screen.
  void MouseWheel(int turn, QPoint place);
  /// The menu key.
  void MenuKey();

 protected:
  void updateGeometries() override;
  bool viewportEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void setCurrentCell(int row, int col);
  void pointAt(int row, int col, Qt::MouseButtons buttons);
  void pointAtPlace(QPoint inViewport, Qt::MouseButtons buttons);
  int keyTarget(int key) const;
  bool leaveHiddenRow();
  void restoreView();
  void showToolTip(QPoint place, QWidget* over);

  FlexGridModel* m_model;
  std::vector<int> m_widths;  // twips
  QString m_toolTip;
  int m_row = 1;
  int m_col = 0;
  int m_mouseRow = -1;
  int m_mouseCol = -1;
  int m_pressRow = -1;
  int m_pressCol = -1;
  int m_topBeforeReset = 1;
  int m_shownBeforeReset = 0;
  bool m_redraw = true;
};

}  // namespace orvanta
