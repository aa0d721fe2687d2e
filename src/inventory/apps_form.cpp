#include "inventory/apps_form.h"

#include <QAction>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QScreen>
#include <QShortcut>
#include <QStringMatcher>

#include "adb/replies.h"
#include "core/busy_tools.h"
#include "core/turn.h"
#include "text/text.h"
#include "ui/flex_grid_paint.h"
#include "ui/twips.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr FormColor highlight = 255 | 255 << 8 | 111 << 16;
constexpr int buttonsTop = 54;
constexpr int buttonHeight = 28;
constexpr int margin = 8;
constexpr int leastOfRead = 260;  // less, and the line goes to the foot of the window
constexpr int statusHeight = 24;
const Designed formTitle(u"Installed Apps");

}  // namespace

Form4::Form4(CommandReports& reports, Turn& turn)
    : Form(u"Form4"_s, 12000, 9000),
      objDOS(std::make_unique<DOSOutputs>(reports, &turn)),
      Frame1(new Frame(u"Frame1"_s, Designed(u"Search"), this)),
      txtSearch(new QLineEdit(Frame1)),
      tmrSearch(new QTimer(this)),
      apps(new AppsModel(this)),
      MSFlexGrid1(new FlexGrid(u"MSFlexGrid1"_s, formTitle, apps, this)),
      mnuNew(new QMenu(this)),
      lblShown(new Label(u"lblShown"_s, this)),
      lblNotice(new TextLabel(this)),
      busyStrip(new BusyStrip(this)),
      lblRead(new Label(u"lblRead"_s, this)) {
  setTitle(formTitle);
  txtSearch->setObjectName(u"txtSearch"_s);
  txtSearch->setFrame(false);
  QPalette onFrame;
  onFrame.setColor(QPalette::Base, Qt::transparent);
  txtSearch->setPalette(onFrame);
  txtSearch->setClearButtonEnabled(true);
  worded(this, [this] {
    txtSearch->setAccessibleName(designed(u"Search"));
    txtSearch->setPlaceholderText(
        inFace(u"搜索所有列 (Ctrl+F)"_s, u"Search all columns (Ctrl+F)"_s, u"搜索所有列 (Ctrl+F)"_s));
  });
  tmrSearch->setObjectName(u"tmrSearch"_s);
  QFont bold = font();
  bold.setPixelSize(13);  // 9.75 point
  bold.setBold(true);
  MSFlexGrid1->setFont(bold);
  setFocusRefuge(MSFlexGrid1);
  lblNotice->setObjectName(u"lblNotice"_s);
  lblNotice->setTextFormat(Qt::PlainText);
  lblNotice->setWordWrap(true);
  createMenu();
  createButtons();
  createShortcuts();
  connectGrid();
  connect(txtSearch, &QLineEdit::textChanged, this, [this] { m_SearchPending = true; });
  connect(tmrSearch, &QTimer::timeout, this, &Form4::tmrSearch_Timer);
  connect(&turn, &Turn::begun, this, [this] { sayOutcome({}); });
  showTools(turn, busyStrip);
  showPercentage(turn, this);
  connect(busyStrip, &BusyStrip::inViewChanged, this,
          [this] { lblNotice->setVisible(!busyStrip->inView()); });
  QWidget::setTabOrder(txtSearch, MSFlexGrid1);
  QWidget* before = MSFlexGrid1;
  for (Button* button : {cmdBackup, cmdRestore, cmdCheck, cmdUninstall, cmdRefresh}) {
    QWidget::setTabOrder(before, button);
    before = button;
  }
  worded(this, [this] {
    countShown();
    showRead();
  });
}

void Form4::createMenu() {
  mnuNew->setObjectName(u"mnuNew"_s);
  const auto entry = [this](QAction*& action, const QString& designName, Designed caption) {
    action = mnuNew->addAction(QString());
    worded(this, [entered = action, caption] { entered->setText(caption.shown()); });
    action->setObjectName(designName);
  };
  entry(mnuCopy, u"mnuCopy"_s, Designed(u"Copy"));
  entry(mnu_backup_apk, u"mnu_backup_apk"_s, Designed(u"Backup APK"));
  entry(mnu_backup_apk_obb, u"mnu_backup_apk_obb"_s, Designed(u"Backup APK + OBB"));
  entry(mnu_uninstall, u"mnu_uninstall"_s, Designed(u"卸载 APK"));
  entry(mnu_startAPK, u"mnu_startAPK"_s, Designed(u"Launch App"));
  entry(mnu_NonRootBackup, u"mnu_NonRootBackup"_s, Designed(u"Backup Non-Root App Data"));
  entry(mnu_Restore, u"mnu_Restore"_s, Designed(u"Restore Non-Root App Data"));
  entry(mnu_Permissions, u"mnu_Permissions"_s, Designed(u"Manage Permissions"));
}

void Form4::createShortcuts() {
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
    txtSearch->setFocus();
    txtSearch->selectAll();
  });
  connect(new QShortcut(Qt::Key_F5, this), &QShortcut::activated, cmdRefresh, &QPushButton::click);
  connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &Form4::clearSearch);
}

void Form4::connectGrid() {
  MSFlexGrid1->showChecks([this](int record) { return m_checked.contains(packageOf(record)); },
                          [this](int record) { return m_icons.value(packageOf(record)); });
  connect(MSFlexGrid1, &FlexGrid::CheckPressed, this, &Form4::toggle);
  connect(MSFlexGrid1, &FlexGrid::CheckAllPressed, this, &Form4::toggleAll);
  connect(MSFlexGrid1, &FlexGrid::Click, this, &Form4::MSFlexGrid1_Click);
  connect(MSFlexGrid1, &FlexGrid::MouseMove, this, &Form4::MSFlexGrid1_MouseMove);
  connect(MSFlexGrid1, &FlexGrid::MouseDown, this, &Form4::MSFlexGrid1_MouseDown);
  connect(MSFlexGrid1, &FlexGrid::MenuKey, this, [this] { mnuNew->popup(MSFlexGrid1->menuPlace()); });
  connect(MSFlexGrid1->horizontalHeader(), &QHeaderView::sectionResized, this,
          [this](int column, int, int size) {
            // What the user has set stays when the window is resized.
            if (!m_fitting && !m_columnWidths.empty())
              m_columnWidths[static_cast<size_t>(column)] = {size, size};
          });
}

QString Form4::CellText(InventoryColumn column) const {
  return MSFlexGrid1->TextMatrix(MSFlexGrid1->RowSel(), column);
}

QString Form4::SelectedPackage() const {
  return CTrim(CellText(ColPackage));
}

QString Form4::SelectedText() const {
  const QString text = MSFlexGrid1->TextMatrix(MSFlexGrid1->Row(), MSFlexGrid1->Col()).trimmed();
  return text.isEmpty() && MSFlexGrid1->Col() == ColMenuIcon ? SelectedPackage() : text;
}

void Form4::refill(const Inventory& inventory) {
  FlexGrid& grid = *MSFlexGrid1;
  const QString current = SelectedPackage();
  const int col = grid.Col();
  const int top = grid.TopRow();
  const int sorted = SortColumn;
  const auto code = static_cast<SortCode>(grid.Tag.toInt());
  apps->setApps(inventory.apps);
  sortBy(ColAppName, SortTextAscending);
  apps->setOrder(grid.rows().order());
  sortBy(sorted, code);
  AutoSizeColumns();
  ApplySearchFilter();
  QSet<QString> there;
  for (int row = 1; row < grid.Rows(); ++row) {
    const QString package = packageOf(grid.rows().record(row));
    there << package;
    if (package == current) grid.setRow(row);
  }
  grid.setCol(col);
  grid.setTopRow(top);
  m_checked.intersect(there);
  showChecks();
}

void Form4::prepareLoad() {
  const QSize place = QGuiApplication::primaryScreen()->size() * twipsPerPixel;
  setWidth(place.width() - 2960);
  setHeight(place.height() - 3000);
  setMinimumSize(480, 280);  // smaller than the size it opens with
  tmrSearch->setInterval(500);
  tmrSearch->start();
  connect(MSFlexGrid1, &FlexGrid::MouseWheel, this, &Form4::MouseWheel);
}

void Form4::fill(const Inventory& inventory) {
  FlexGrid& grid = *MSFlexGrid1;
  apps->setApps(inventory.apps);
  sortBy(ColAppName, SortTextAscending);
  apps->setOrder(grid.rows().order());
  GridReady = true;
  AutoSizeColumns();
  countShown();
}

void Form4::sortBy(int column, SortCode code) {
  FlexGrid& grid = *MSFlexGrid1;
  grid.setCol(column);
  grid.setSort(code);
  grid.Tag = QString::number(code);
  SortColumn = grid.Col();
  grid.setCol(0);
  grid.setRow(0);
}

void Form4::AutoSizeColumns() {
  m_columnWidths = measuredColumns(*apps, QFontMetricsF(MSFlexGrid1->font()), FlexGridHeader::arrowRoom);
  fitColumns();
}

void Form4::fitColumns() {
  m_fitting = true;
  const std::vector<int> widths =
      fittedWidths(m_columnWidths, width() - 2 * margin - MSFlexGrid1->besideColumns());
  for (size_t column = 0; column < widths.size(); ++column)
    MSFlexGrid1->setColumnWidth(static_cast<int>(column), widths[column]);
  m_fitting = false;
}

void Form4::setNotice(const QString& notice) {
  m_notice = notice.isEmpty() ? notice : u"⚠ "_s + notice;
  showNotice();
}

void Form4::sayOutcome(QStringList lines) {
  lines.removeAll(QString());
  m_outcome = lines.join(u'\n');
  showNotice();
}

void Form4::showNotice() {
  const QString& shown = m_outcome.isEmpty() ? m_notice : m_outcome;
  lblNotice->setText(shown);
  lblNotice->setToolTip(shown);
  alignNotice();
}

/// Shows the beginning of a text that is too long for its place.
void Form4::alignNotice() {
  const bool fits = lblNotice->heightForWidth(lblNotice->width()) <= lblNotice->height();
  lblNotice->setAlignment(Qt::AlignLeft | (fits ? Qt::AlignVCenter : Qt::AlignTop));
}

void Form4::MSFlexGrid1_Click() {
  const FlexGrid& grid = *MSFlexGrid1;
  if (grid.MouseRow() != 0 || grid.MouseCol() < 0) return;
  sortBy(grid.MouseCol(), sortCodeOfPress(grid.MouseCol(), SortColumn, grid.Tag.toInt()));
}

void Form4::MSFlexGrid1_MouseMove(Qt::MouseButtons Button) {
  FlexGrid& grid = *MSFlexGrid1;
  // Outside the cells nothing changes: the highlight keeps showing the current row.
  if (!GridReady || grid.MouseRow() < 0) return;
  const int row = grid.MouseRow();
  const int col = grid.MouseCol();
  // Compares the grid's cell too: a sort moves it, and at first no cell has the highlight.
  if (row != HoverRow || col != HoverCol || row != grid.Row() || col != grid.Col()) {
    grid.setRow(row);
    grid.setCol(col);
    grid.setCellBackColor(row, col, highlight);
    HoverCol = grid.Col();
    HoverRow = grid.Row();
  }
  if (Button != Qt::NoButton) return;
  if (row + 1 == m_LastTipRow && col + 1 == m_LastTipCol) return;
  m_LastTipRow = row + 1;
  m_LastTipCol = col + 1;
  const QString t = grid.TextMatrix(row, col);
  const int room = row == 0 ? cellRoom + FlexGridHeader::arrowRoom : cellRoom;
  const bool cut = textWidth(t, QFontMetricsF(grid.font())) + room > grid.columnWidth(col);
  QString tip = cut ? t.trimmed() : QString();
  if (row == 0 && columns[col].kind == CellKind::Size) tip = t.trimmed() + u" (MiB)"_s;
  grid.setToolTip(tip);
}

void Form4::MSFlexGrid1_MouseDown(Qt::MouseButton Button) {
  FlexGrid& grid = *MSFlexGrid1;
  const bool iconCell = Button == Qt::LeftButton && grid.MouseRow() >= 0 && grid.ColSel() == ColMenuIcon;
  if (Button != Qt::RightButton && !iconCell) return;
  mnuNew->popup(iconCell ? grid.menuPlace() : QCursor::pos());
  // The menu takes the button's release. The header's click still comes, when the menu has closed.
  if (iconCell && grid.MouseRow() == 0)
    connect(mnuNew, &QMenu::aboutToHide, this, &Form4::MSFlexGrid1_Click, Qt::SingleShotConnection);
}

void Form4::MouseWheel(int turn, QPoint place) {
  FlexGrid& grid = *MSFlexGrid1;
  if (!IsOver(QRect(grid.mapToGlobal(QPoint()), grid.size()), place)) return;
  const int Rotation = m_notches.take(turn);
  if (Rotation == 0) return;
  const int before = grid.TopRow();
  const PagedList list{grid.height(), FlexGrid::rowPixels, grid.Rows(), before,
                       [&grid](int row) { return grid.RowIsVisible(row); }};
  const auto top = FlexGridScroll(list, Rotation);
  if (!top) return;
  grid.setTopRow(*top);
  // If a search hides more than a page of rows in one place, the paging rule finds no target row.
  if (grid.TopRow() == before) grid.turnPage(Rotation > 0);
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
  const QStringMatcher search(txtSearch->text(), Qt::CaseInsensitive);
  MSFlexGrid1->showOnly([this, &search](int record) {
    bool matches = search.pattern().isEmpty();
    for (int column = 0; column < inventoryColumns && !matches; ++column)
      matches = search.indexIn(apps->cell(record, column).text) >= 0;
    return matches;
  });
  countShown();
}

void Form4::countShown() {
  const FlexGridRows& rows = MSFlexGrid1->rows();
  double mebibytes = 0;
  for (int shown = 0; shown < rows.rowCount(); ++shown)
    mebibytes += apps->cell(rows.record(rows.row(shown)), ColUsedSpace).value;
  QString text = inFace(u"显示 %1 / %2 个应用  ·  共占用 %3 MiB"_s, u"%1 of %2 apps shown  ·  %3 MiB used"_s,
                        u"显示 %1 / %2 个应用 (Apps shown)  ·  共占用 %3 MiB (Used space)"_s)
                     .arg(QString::number(rows.rowCount()), QString::number(apps->rowCount()),
                          QString::number(mebibytes, 'f', 1));
  if (!m_checked.isEmpty())
    text +=
        u"  ·  "_s + inFace(u"已勾选 %1"_s, u"%1 checked"_s, u"已勾选 %1 (checked)"_s).arg(m_checked.size());
  lblShown->setCaption(text);
  MSFlexGrid1->setToldWhenEmpty(
      apps->rowCount() == 0
          ? QString()
          : inFace(u"没有找到：按 Esc 清除搜索"_s, u"Nothing found: press Esc to clear the search"_s));
}

void Form4::resizeEvent(QResizeEvent* event) {
  Form::resizeEvent(event);
  if (busyStrip != nullptr) Form_Resize();
}

void Form4::Form_Resize() {
  Frame1->setGeometry(pixels(120), pixels(120), pixels(3855), pixels(615));
  txtSearch->setGeometry(Frame1->contentArea());
  const int besideSearch = Frame1->geometry().right() + 2 * margin;
  lblNotice->setGeometry(besideSearch, Frame1->y(), width() - besideSearch - margin, Frame1->height());
  alignNotice();
  busyStrip->setGeometry(besideSearch, Frame1->y() + 8, width() - besideSearch - margin, 26);
  fitColumns();
  const QPoint buttonsEnd = layButtons(margin, buttonsTop);
  const int gridTop = buttonsEnd.y() + buttonHeight + margin;
  MSFlexGrid1->setGeometry(margin, gridTop, width() - 2 * margin, height() - gridTop - statusHeight);
  const int right = buttonsEnd.x() + 2 * margin;
  const bool beside = width() - margin - right >= leastOfRead;
  const int foot = height() - statusHeight;
  const int half = beside ? 0 : width() / 3;
  lblShown->setGeometry(margin, foot, width() - 2 * margin - half, statusHeight);
  lblRead->setAlignment(Qt::AlignVCenter | Qt::AlignRight);
  if (beside) {
    lblRead->setGeometry(right, buttonsEnd.y(), width() - margin - right, buttonHeight);
  } else {
    lblRead->setGeometry(width() - margin - half, foot, half, statusHeight);
  }
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
