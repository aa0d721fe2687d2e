#include "inventory/apps_form.h"

#include <QAction>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QShortcut>
#include <QStringMatcher>
#include <array>

#include "core/turn.h"
#include "inventory/cell_text.h"
#include "inventory/sort_press.h"
#include "ui/theme.h"
#include "ui/twips.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr FormColor highlight = 255 | 255 << 8 | 111 << 16;
constexpr int gridTop = 56;
constexpr int margin = 8;
constexpr int statusHeight = 24;
constexpr int cellRoomTwips = 100;
constexpr int iconColumnTwips = 300;
constexpr int widestVersionTwips = 4800;
constexpr qsizetype longestMeasured = 400;
const QString formTitle = u"Installed Apps"_s;

constexpr QStringView headings[] = {u"App Name",       u"Package Name",  u"版本",
                                    u"Build",          u"Used Space",    u"Used APK Space",
                                    u"Used OBB Space", u"Used App Data", u"<- Click to sort"};

}  // namespace

Form4::Form4(CommandReports& reports, Turn& turn)
    : Form(u"Form4"_s, 12000, 9000),
      objDOS(std::make_unique<DOSOutputs>(reports, &turn)),
      Frame1(new Frame(u"Frame1"_s, u"Search"_s, this)),
      txtSearch(new QLineEdit(Frame1)),
      tmrSearch(new QTimer(this)),
      MSFlexGrid1(new FlexGrid(u"MSFlexGrid1"_s, formTitle, this)),
      mnuNew(new QMenu(u"New"_s, this)),
      lblShown(new Label(u"lblShown"_s, this)),
      lblNotice(new QLabel(this)),
      busyStrip(new BusyStrip(this)) {
  setWindowTitle(formTitle);
  txtSearch->setObjectName(u"txtSearch"_s);
  txtSearch->setAccessibleName(u"Search"_s);
  txtSearch->setFrame(false);
  QPalette onFrame;
  onFrame.setColor(QPalette::Base, Qt::transparent);
  txtSearch->setPalette(onFrame);
  txtSearch->setClearButtonEnabled(true);
  txtSearch->setPlaceholderText(u"搜索所有列 (Ctrl+F)"_s);
  tmrSearch->setObjectName(u"tmrSearch"_s);
  QFont bold = font();
  bold.setPixelSize(13);  // 9.75 point
  bold.setBold(true);
  MSFlexGrid1->setFont(bold);
  MSFlexGrid1->setCols(inventoryColumns);
  lblNotice->setObjectName(u"lblNotice"_s);
  lblNotice->setTextFormat(Qt::PlainText);
  lblNotice->setWordWrap(true);
  createMenu();
  createShortcuts();
  connectGrid();
  connect(txtSearch, &QLineEdit::textChanged, this, [this] { m_SearchPending = true; });
  connect(tmrSearch, &QTimer::timeout, this, &Form4::tmrSearch_Timer);
  connect(busyStrip, &BusyStrip::stopRequested, &turn, &Turn::requestStop);
  connect(&turn, &Turn::toolStarted, busyStrip, &BusyStrip::begin);
  connect(&turn, &Turn::toolEnded, busyStrip, &BusyStrip::pause);
  connect(&turn, &Turn::ended, busyStrip, &BusyStrip::end);
  connect(busyStrip, &BusyStrip::inViewChanged, this,
          [this] { lblNotice->setVisible(!busyStrip->inView()); });
  QWidget::setTabOrder(txtSearch, MSFlexGrid1);
}

void Form4::createMenu() {
  mnuNew->setObjectName(u"mnuNew"_s);
  const auto entry = [this](const QString& designName, const QString& caption) {
    QAction* action = mnuNew->addAction(caption);
    action->setObjectName(designName);
    return action;
  };
  mnuCopy = entry(u"mnuCopy"_s, u"Copy"_s);
  mnu_backup_apk = entry(u"mnu_backup_apk"_s, u"Backup APK"_s);
  mnu_backup_apk_obb = entry(u"mnu_backup_apk_obb"_s, u"Backup APK + OBB"_s);
  mnu_uninstall = entry(u"mnu_uninstall"_s, u"卸载 APK"_s);
  mnu_startAPK = entry(u"mnu_startAPK"_s, u"Launch App"_s);
  mnu_NonRootBackup = entry(u"mnu_NonRootBackup"_s, u"Backup Non-Root App Data"_s);
  mnu_Restore = entry(u"mnu_Restore"_s, u"Restore Non-Root App Data"_s);
  mnu_Permissions = entry(u"mnu_Permissions"_s, u"Manage Permissions"_s);
}

void Form4::createShortcuts() {
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
    txtSearch->setFocus();
    txtSearch->selectAll();
  });
  connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &Form4::clearSearch);
}

void Form4::connectGrid() {
  connect(MSFlexGrid1, &FlexGrid::Click, this, &Form4::MSFlexGrid1_Click);
  connect(MSFlexGrid1, &FlexGrid::MouseMove, this, &Form4::MSFlexGrid1_MouseMove);
  connect(MSFlexGrid1, &FlexGrid::MouseDown, this, &Form4::MSFlexGrid1_MouseDown);
  connect(MSFlexGrid1, &FlexGrid::MenuKey, this, [this] { mnuNew->popup(MSFlexGrid1->menuPlace()); });
}

QString Form4::CellText(InventoryColumn column) const {
  return MSFlexGrid1->TextMatrix(MSFlexGrid1->RowSel(), column);
}

QString Form4::SelectedPackage() const {
  return CTrim(CellText(ColPackage));
}

void Form4::prepareLoad() {
  const QSize place = QGuiApplication::primaryScreen()->size() * twipsPerPixel;
  setWidth(place.width() - 2960);
  setHeight(place.height() - 3000);
  setMinimumSize(480, 280);  // it may be made smaller than it comes
  tmrSearch->setInterval(500);
  tmrSearch->start();
  connect(MSFlexGrid1, &FlexGrid::MouseWheel, this, &Form4::MouseWheel);
  NormalRowHeight = MSFlexGrid1->RowHeight(0);
  headColumns();
}

void Form4::fill(const Inventory& inventory) {
  FlexGrid& grid = *MSFlexGrid1;
  grid.setRedraw(false);
  grid.setRows(static_cast<int>(inventory.apps.size()) + 1);
  int row = 0;
  for (const InventoryApp& app : inventory.apps) {
    ++row;
    for (size_t column = 0; column < app.size(); ++column)
      grid.setTextMatrix(row, static_cast<int>(column), app[column].toString());
  }
  firstSort();
  GridReady = true;
  sizeColumns();
  grid.setRedraw(true);
}

void Form4::headColumns() {
  for (int col = 0; col < static_cast<int>(std::size(headings)); ++col)
    MSFlexGrid1->setTextMatrix(0, col, headings[col].toString());
  const Qt::Alignment number = Qt::AlignRight | Qt::AlignVCenter;
  for (const int col : {ColUsedSpace, ColApkSpace, ColObbSpace, ColDataSpace})
    MSFlexGrid1->setColAlignment(col, number);
  MSFlexGrid1->setColAlignment(ColMenuIcon, Qt::AlignCenter);
}

void Form4::firstSort() {
  FlexGrid& grid = *MSFlexGrid1;
  grid.setCol(ColAppName);
  grid.setSort(SortTextAscending);
  grid.Tag = QString::number(SortTextAscending);
  SortColumn = grid.Col();
  grid.setCol(0);
  grid.setRow(0);
  for (int i = 1; i < grid.Rows(); ++i) grid.setTextMatrix(i, ColOrder, QString::number(i));
}

void Form4::sizeColumns() {
  FlexGrid& grid = *MSFlexGrid1;
  AutoSizeColumns();
  grid.setColWidth(ColMenuIcon, iconColumnTwips);
  grid.setColWidth(ColVersion, std::min(grid.ColWidth(ColVersion), widestVersionTwips));
  const QIcon cog(u":/grid/cog.png"_s);
  const int row = grid.Row();
  const int col = grid.Col();
  grid.setCol(ColMenuIcon);
  for (int i = 1; i < grid.Rows(); ++i) {
    grid.setRow(i);
    grid.setCellPicture(cog);
  }
  grid.setRow(row);
  grid.setCol(col);
  countShown();
}

void Form4::AutoSizeColumns() {
  FlexGrid& grid = *MSFlexGrid1;
  // Laying out every text would take most of a large inventory's time. The sum of its characters' widths is
  // close enough to tell which texts cannot be the widest of their column.
  const QFontMetricsF metrics(grid.font());
  std::array<double, 128> advances = {};
  for (char16_t c = u' '; c < 127; ++c) advances[c] = metrics.horizontalAdvance(QChar(c));
  const double wide = metrics.horizontalAdvance(QChar(0x4e00));
  const auto roughWidth = [&advances, wide](const QString& text) {
    double sum = 0;
    for (const QChar c : text) sum += c.unicode() < advances.size() ? advances[c.unicode()] : wide;
    return sum;
  };
  // A label can be as long as a file can hold. A column wider than the grid could never be seen whole; the
  // tool-tip has the rest.
  const int gridWidth = grid.width() * twipsPerPixel;
  for (int col = 0; col < grid.Cols(); ++col) {
    int widest = grid.TextWidth(grid.TextMatrix(0, col)) + FlexGrid::HeaderRoom() + cellRoomTwips;
    for (int row = FlexGrid::FixedRows(); row < grid.Rows(); ++row) {
      const QString text = grid.TextMatrix(row, col);
      if (roughWidth(text) * twipsPerPixel + cellRoomTwips <= widest) continue;
      widest = std::max(widest, grid.TextWidth(text.left(longestMeasured).trimmed()) + cellRoomTwips);
    }
    grid.setColWidth(col, std::min(widest, gridWidth));
  }
}

void Form4::setNotice(const QString& notice) {
  lblNotice->setText(notice.isEmpty() ? notice : u"⚠ "_s + notice);
  lblNotice->setToolTip(notice);
}

void Form4::MSFlexGrid1_Click() {
  FlexGrid& grid = *MSFlexGrid1;
  if (grid.MouseRow() != 0 || grid.MouseCol() <= FlexGrid::FixedCols() - 1) return;
  grid.setRedraw(false);
  grid.setCol(grid.MouseCol());
  const int code = sortCodeOfPress(grid.Col(), SortColumn, grid.Tag.toInt());
  grid.setSort(code);
  grid.Tag = QString::number(code);
  SortColumn = grid.Col();
  grid.setCol(0);
  grid.setRow(0);
  grid.setRedraw(true);
}

void Form4::MSFlexGrid1_MouseMove(Qt::MouseButtons Button) {
  FlexGrid& grid = *MSFlexGrid1;
  // Beside the cells nothing changes: the row keeps the highlight that says which one it is.
  if (!GridReady || grid.MouseRow() < 0) return;
  const int row = grid.MouseRow();
  const int col = grid.MouseCol();
  // The grid's own cell counts too: a sort has moved it, and at first no cell has the highlight.
  if (row != HoverRow || col != HoverCol || row != grid.Row() || col != grid.Col()) {
    grid.setRow(HoverRow);
    grid.setCol(HoverCol);
    grid.setCellBackColor(grid.BackColor());
    grid.setRow(row);
    grid.setCol(col);
    grid.setCellBackColor(highlight);
    HoverCol = grid.Col();
    HoverRow = grid.Row();
  }
  if (Button != Qt::NoButton) return;
  if (row + 1 == m_LastTipRow && col + 1 == m_LastTipCol) return;
  m_LastTipRow = row + 1;
  m_LastTipCol = col + 1;
  const QString t = grid.TextMatrix(row, col);
  const int needed = grid.TextWidth(t.left(longestMeasured).trimmed()) + cellRoomTwips;
  grid.setToolTipText(needed > grid.ColWidth(col) ? t : QString());
}

void Form4::MSFlexGrid1_MouseDown(Qt::MouseButton Button) {
  FlexGrid& grid = *MSFlexGrid1;
  const bool iconCell = Button == Qt::LeftButton && grid.MouseRow() >= 0 && grid.ColSel() == ColMenuIcon;
  if (Button != Qt::RightButton && !iconCell) return;
  mnuNew->popup(iconCell ? grid.menuPlace() : QCursor::pos());
  // The menu takes the button's release. The header's click comes all the same, when the menu has gone.
  if (iconCell && grid.MouseRow() == 0)
    connect(mnuNew, &QMenu::aboutToHide, this, &Form4::MSFlexGrid1_Click, Qt::SingleShotConnection);
}

void Form4::MouseWheel(int turn, QPoint place) {
  FlexGrid& grid = *MSFlexGrid1;
  if (!IsOver(QRect(grid.mapToGlobal(QPoint()), grid.size()), place)) return;
  const int Rotation = m_notches.take(turn);
  if (Rotation == 0) return;
  const PagedList list{grid.Height(), grid.RowHeight(0), grid.Rows(), grid.TopRow(),
                       [&grid](int row) { return grid.RowIsVisible(row); }};
  if (const auto top = FlexGridScroll(list, Rotation)) grid.setTopRow(*top);
}

void Form4::tmrSearch_Timer() {
  const QString text = txtSearch->text();
  if (m_SearchPending && text == m_LastSearchText) {
    m_SearchPending = false;
    ApplySearchFilter();
  }
  m_LastSearchText = text;
}

void Form4::clearSearch() {
  if (txtSearch->text().isEmpty()) return;
  txtSearch->clear();
  m_SearchPending = false;
  ApplySearchFilter();
}

void Form4::ApplySearchFilter() {
  FlexGrid& grid = *MSFlexGrid1;
  const QStringMatcher search(txtSearch->text(), Qt::CaseInsensitive);
  grid.setRedraw(false);
  for (int row = FlexGrid::FixedRows(); row < grid.Rows(); ++row) {
    bool matches = search.pattern().isEmpty();
    for (int col = FlexGrid::FixedCols(); col < grid.Cols() && !matches; ++col)
      matches = search.indexIn(grid.TextMatrix(row, col)) >= 0;
    grid.setRowHeight(row, matches ? NormalRowHeight : 0);
  }
  grid.setRedraw(true);
  countShown();
}

void Form4::countShown() {
  const FlexGrid& grid = *MSFlexGrid1;
  int shown = 0;
  qint64 tenths = 0;
  for (int row = FlexGrid::FixedRows(); row < grid.Rows(); ++row) {
    if (grid.RowHeight(row) == 0) continue;
    ++shown;
    tenths += tenthsIn(grid.TextMatrix(row, ColUsedSpace));
  }
  lblShown->setCaption(u"显示 %1 / %2 个应用 (Apps shown)  ·  共占用 %3 MiB (Used space)"_s.arg(
      QString::number(shown), QString::number(std::max(grid.Rows() - 1, 0)), tenthsText(tenths)));
}

void Form4::resizeEvent(QResizeEvent* event) {
  Form::resizeEvent(event);
  if (busyStrip != nullptr) Form_Resize();
}

void Form4::Form_Resize() {
  Frame1->setGeometry(pixels(120), pixels(120), pixels(3855), pixels(615));
  txtSearch->setGeometry(Frame1->contentArea());
  const int beside = Frame1->geometry().right() + 2 * margin;
  lblNotice->setGeometry(beside, Frame1->y(), width() - beside - margin, Frame1->height());
  busyStrip->setGeometry(beside, Frame1->y() + 8, width() - beside - margin, 26);
  MSFlexGrid1->setGeometry(margin, gridTop, width() - 2 * margin, height() - gridTop - statusHeight);
  lblShown->setGeometry(margin, height() - statusHeight, width() - 2 * margin, statusHeight);
}

void Form4::closeEvent(QCloseEvent* event) {
  Form_Unload();
  Form::closeEvent(event);
}

void Form4::Form_Unload() {
  disconnect(MSFlexGrid1, &FlexGrid::MouseWheel, this, &Form4::MouseWheel);
  tmrSearch->stop();
  GridReady = false;
  Q_EMIT unloaded();
}

}  // namespace orvanta
