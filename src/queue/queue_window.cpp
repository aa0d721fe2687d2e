#include "queue/queue_window.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>

#include "adb/storage.h"
#include "core/busy_tools.h"
#include "platform/taskbar_progress.h"
#include "ui/transfer_pace.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

using Stage = QueueItem::Stage;

constexpr int widthTwips = 15300;
constexpr int heightTwips = 7500;
constexpr int margin = 8;
constexpr int gap = 6;
constexpr int rowHeight = 34;
constexpr int iconSize = 28;
constexpr int buttonHeight = 30;
constexpr int lineHeight = 24;

enum Column { ColApp, ColBuild, ColOnHeadset, ColFiles, ColSize, ColState, columnCount };

Bilingual nameOf(Stage state) {
  switch (state) {
    case Stage::Unread:
      return {u"正在读取…"_s, u"Reading…"_s};
    case Stage::Ready:
      return {u"等待安装"_s, u"Ready"_s};
    case Stage::Running:
      return {u"正在安装…"_s, u"Installing…"_s};
    case Stage::Waiting:
      return {u"等待头显重新连接…"_s, u"Waiting for the headset…"_s};
    case Stage::Done:
      return {u"已安装"_s, u"Installed"_s};
    case Stage::Partly:
      return {u"已安装，但文件不全"_s, u"Installed, but files are missing"_s};
    case Stage::Failed:
      return {u"失败"_s, u"Failed"_s};
    case Stage::Skipped:
      return {u"跳过"_s, u"Skipped"_s};
    case Stage::Unusable:
      return {u"不能安装"_s, u"Cannot be installed"_s};
  }
  return {};
}

QString stateText(const QueueItem& item) {
  const bool plain = item.words.english.isEmpty();
  QString sign;
  if (item.state == Stage::Done) sign = u"✓ "_s;
  if (item.state == Stage::Failed || item.state == Stage::Partly || item.state == Stage::Unusable)
    sign = u"✗ "_s;
  return sign + (plain ? nameOf(item.state) : item.words).shown();
}

QString onHeadset(const QueueItem& item) {
  if (!item.onHeadset || item.fields[FieldPackage].isEmpty()) return {};
  if (item.onHeadset->isEmpty()) return u"—"_s;
  return *item.onHeadset + (item.isNewerOnHeadset() ? u" ▲"_s : QString());
}

QString filesOf(const QueueItem& item) {
  const qsizetype count = item.ownFiles.size() + item.files.size();
  return count == 0 ? QString() : QString::number(count);
}

}  // namespace

QueueWindow::QueueWindow(InstallQueue& queue, Desktop& desktop, QWidget* owner)
    : Form(u"queueWindow"_s, widthTwips, heightTwips, owner), m_queue(queue), m_desktop(desktop) {
  setTitle({u"安装队列"_s, u"Queue"_s});
  createTable();
  lblSummary = new Label(u"lblSummary"_s, this);
  overall = new QProgressBar(this);
  overall->setObjectName(u"overall"_s);
  worded(this, [this] { overall->setAccessibleName(inFace(u"总进度"_s, u"Overall progress"_s)); });
  busyStrip = new BusyStrip(this);
  cmdAdd = new Button(u"cmdAdd"_s, {u"添加文件夹…"_s, u"Add Folder…"_s},
                      {u"文件夹里的所有安装包；也可以把文件拖到这里"_s,
                       u"All packages in it; files can be dropped here, too"_s},
                      this);
  cmdSkip = new Button(
      u"cmdSkip"_s, {u"跳过"_s, u"Skip"_s},
      {u"不装所选的行，再按一次恢复"_s, u"Leaves the marked rows out; again takes them in"_s}, this);
  cmdRetry = new Button(u"cmdRetry"_s, {u"重试失败的"_s, u"Retry Failed"_s},
                        {u"只重装没有成功的"_s, u"Only what did not go well"_s}, this);
  cmdCopy = new Button(u"cmdCopy"_s, {u"复制结果"_s, u"Copy Results"_s}, {}, this);
  cmdStart = new Button(u"cmdStart"_s, {u"开始安装"_s, u"Start"_s},
                        {u"一个接一个地安装"_s, u"Installs one after the other"_s}, this);
  cmdClose = new Button(u"cmdClose"_s, {u"关闭"_s, u"Close"_s}, {}, this);
  QFont strong = cmdStart->font();
  strong.setBold(true);
  cmdStart->setFont(strong);
  showTools(m_queue.bench().turn, busyStrip);
  connect(busyStrip, &BusyStrip::inViewChanged, this,
          [this] { lblSummary->setVisible(!busyStrip->inView()); });
  connect(&m_queue, &InstallQueue::changed, this, &QueueWindow::showItems);
  connect(&m_queue, &InstallQueue::progressed, this, &QueueWindow::showProgress);
  connect(cmdAdd, &QPushButton::clicked, this, [this] { cmdAdd_Click(); });
  connect(cmdSkip, &QPushButton::clicked, this, &QueueWindow::cmdSkip_Click);
  connect(cmdRetry, &QPushButton::clicked, this, &QueueWindow::cmdRetry_Click);
  connect(cmdCopy, &QPushButton::clicked, this, &QueueWindow::cmdCopy_Click);
  connect(cmdStart, &QPushButton::clicked, this, [this] { m_queue.start(); });
  connect(cmdClose, &QPushButton::clicked, this, &QueueWindow::close);
  setFocusRefuge(table);
  worded(this, [this] { showItems(); });
}

void QueueWindow::createTable() {
  table = new QTableWidget(0, columnCount, this);
  table->setObjectName(u"table"_s);
  worded(this, [this] {
    table->setAccessibleName(inFace(u"安装包"_s, u"Packages"_s));
    table->setHorizontalHeaderLabels({inFace(u"应用"_s, u"App"_s), inFace(u"版本号"_s, u"Build"_s),
                                      inFace(u"头显上"_s, u"Headset"_s), u"OBB"_s,
                                      inFace(u"大小"_s, u"Size"_s), inFace(u"状态"_s, u"State"_s)});
  });
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setTabKeyNavigation(false);
  table->setShowGrid(false);
  table->setWordWrap(false);
  table->setIconSize(QSize(iconSize, iconSize));
  table->verticalHeader()->hide();
  table->verticalHeader()->setDefaultSectionSize(rowHeight);
  QHeaderView* header = table->horizontalHeader();
  header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  header->setHighlightSections(false);
  const int widths[] = {280, 90, 130, 60, 90, 300};
  for (int column = 0; column < columnCount; ++column) table->setColumnWidth(column, widths[column]);
  header->setStretchLastSection(true);
}

void QueueWindow::resizeEvent(QResizeEvent* event) {
  Form::resizeEvent(event);
  if (cmdClose != nullptr) arrange();
}

void QueueWindow::arrange() {
  const int right = width() - margin;
  int bottom = height() - margin;
  int x = margin;
  for (Button* button : {cmdAdd, cmdSkip, cmdRetry, cmdCopy}) {
    button->setGeometry(x, bottom - buttonHeight, button->sizeHint().width() + 2 * margin, buttonHeight);
    x = button->geometry().right() + 1 + gap;
  }
  x = right;
  for (Button* button : {cmdClose, cmdStart}) {
    const int wide = button->sizeHint().width() + 2 * margin;
    button->setGeometry(x - wide, bottom - buttonHeight, wide, buttonHeight);
    x -= wide + gap;
  }
  bottom -= buttonHeight + gap;
  for (QWidget* line : {static_cast<QWidget*>(lblSummary), static_cast<QWidget*>(busyStrip)})
    line->setGeometry(margin, bottom - lineHeight, right - margin, lineHeight);
  bottom -= lineHeight + gap;
  overall->setGeometry(margin, bottom - lineHeight + gap, right - margin, lineHeight - gap);
  bottom -= lineHeight;
  table->setGeometry(margin, margin, right - margin, bottom - gap - margin);
}

void QueueWindow::closeEvent(QCloseEvent* event) {
  if (!m_queue.isBusy()) {
    Form::closeEvent(event);
    return;
  }
  event->ignore();
  busyStrip->askToWait();
}

void QueueWindow::showItems() {
  const auto& items = m_queue.items();
  table->setRowCount(static_cast<int>(items.size()));
  qsizetype counts[static_cast<size_t>(Stage::Unusable) + 1] = {};
  for (int row = 0; row < table->rowCount(); ++row) {
    showRow(row);
    ++counts[static_cast<size_t>(items[static_cast<size_t>(row)].state)];
  }
  const auto of = [&counts](Stage state) { return counts[static_cast<size_t>(state)]; };
  const qsizetype failed = of(Stage::Failed) + of(Stage::Partly);
  const auto filled = [&](const QString& text) {
    return text.arg(items.size()).arg(of(Stage::Done)).arg(failed).arg(of(Stage::Ready));
  };
  lblSummary->setCaption(inFace(filled(u"共 %1 个：已安装 %2，失败 %3，等待 %4"_s),
                                filled(u"%1 in all: %2 installed, %3 failed, %4 to come"_s)));
  const bool busy = m_queue.isBusy();
  cmdStart->setEnabled(!busy && of(Stage::Ready) > 0);
  cmdRetry->setEnabled(!busy && failed > 0);
  cmdCopy->setEnabled(!items.empty());
  cmdClose->setEnabled(!busy);
  cmdSkip->setEnabled(of(Stage::Ready) + of(Stage::Skipped) + of(Stage::Running) + of(Stage::Waiting) > 0);
  showProgress();
}

void QueueWindow::showRow(int row) {
  const QueueItem& item = m_queue.items()[static_cast<size_t>(row)];
  const QString texts[columnCount] = {item.title(),
                                      item.fields[FieldVersionCode],
                                      onHeadset(item),
                                      filesOf(item),
                                      item.bytes > 0 ? readableSize(item.bytes) : QString(),
                                      stateText(item)};
  for (int column = 0; column < columnCount; ++column) {
    QTableWidgetItem* cell = table->item(row, column);
    if (cell == nullptr) {
      cell = new QTableWidgetItem;
      table->setItem(row, column, cell);
    }
    if (cell->text() != texts[column]) {
      cell->setText(texts[column]);
      cell->setToolTip(texts[column]);
    }
  }
  QTableWidgetItem* name = table->item(row, ColApp);
  name->setToolTip(item.fields[FieldPackage] + u"\n"_s + QDir::toNativeSeparators(item.path));
  if (!item.icon.isNull() && name->icon().isNull()) name->setIcon(QIcon(QPixmap::fromImage(item.icon)));
  if (item.state == Stage::Running) table->scrollToItem(name);
}

void QueueWindow::showProgress() {
  const bool busy = m_queue.isBusy() && m_queue.allBytes() > 0;
  const int percent = busy ? percentOf(m_queue.doneBytes(), m_queue.allBytes()) : -1;
  overall->setVisible(busy);
  if (percent == m_percent) return;
  m_percent = percent;
  overall->setValue(qMax(percent, 0));
  const QString title = inFace(u"安装队列"_s, u"Queue"_s);
  setWindowTitle(percent < 0 ? title : u"%1% · "_s.arg(percent) + title);
  showTaskbarProgress(windowHandle(), percent);
}

QCoro::Task<> QueueWindow::cmdAdd_Click() {
  const QString folder =
      co_await m_desktop.askFolder(inFace(u"安装包所在的文件夹"_s, u"The folder with packages"_s));
  if (!folder.isEmpty()) m_queue.add({folder});
}

void QueueWindow::cmdSkip_Click() {
  QList<int> rows;
  for (const QModelIndex& index : table->selectionModel()->selectedRows()) rows << index.row();
  for (const int row : rows) m_queue.skip(row);
}

void QueueWindow::cmdRetry_Click() {
  m_queue.retry();
  m_queue.start();
}

void QueueWindow::cmdCopy_Click() {
  QGuiApplication::clipboard()->setText(m_queue.report());
}

}  // namespace orvanta
