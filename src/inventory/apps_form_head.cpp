// The row of buttons above the list, and what they are about: the checked apps, and the headset of the list.
#include <algorithm>

#include "adb/replies.h"
#include "inventory/apps_form.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int margin = 8;
constexpr int buttonHeight = 28;
constexpr int buttonPadding = 12;
constexpr int rowGap = 4;

}  // namespace

void Form4::createButtons() {
  cmdBackup = new Button(u"cmdBackup"_s, {u"全部备份"_s, u"Back up everything"_s},
                         {u"安装包、OBB 和数据存到一个文件夹：勾选的应用，没有勾选时为当前行"_s,
                          u"Package, OBB and data to one folder: what is checked, else the current row"_s},
                         this);
  cmdRestore = new Button(u"cmdRestore"_s, {u"还原"_s, u"Restore"_s},
                          {u"把备份放回头显"_s, u"Put backups back on the headset"_s}, this);
  cmdCheck = new Button(
      u"cmdCheck"_s, {u"检查备份"_s, u"Check"_s},
      {u"核对备份的内容，不需要头显"_s, u"Compare backups with their manifests; needs no headset"_s}, this);
  cmdUninstall = new Button(u"cmdUninstall"_s, {u"卸载"_s, u"Uninstall"_s},
                            {u"先询问，再卸载：勾选的应用，没有勾选时为当前行"_s,
                             u"Ask, then uninstall: what is checked, else the current row"_s},
                            this);
  cmdRefresh = new Button(u"cmdRefresh"_s, {u"刷新 (F5)"_s, u"Refresh (F5)"_s, u"刷新 (Refresh, F5)"_s},
                          {u"重新读取列表"_s, u"Read the list anew"_s}, this);
}

QString Form4::packageOf(int record) const {
  return record < 0 ? QString() : CTrim(apps->cell(record, ColPackage).text);
}

ChosenApp Form4::appAt(int record) const {
  constexpr double mebibyte = 1024.0 * 1024.0;
  const double size = apps->cell(record, ColUsedSpace).value;
  return {packageOf(record), apps->cell(record, ColAppName).text.trimmed(),
          static_cast<qint64>(size * mebibyte)};
}

QList<ChosenApp> Form4::chosenApps() const {
  QList<ChosenApp> chosen;
  for (const int record : MSFlexGrid1->rows().order())
    if (m_checked.contains(packageOf(record))) chosen << appAt(record);
  const int current = MSFlexGrid1->rows().record(MSFlexGrid1->Row());
  if (chosen.isEmpty() && current >= 0) chosen << appAt(current);
  return chosen;
}

void Form4::toggle(int record) {
  const QString package = packageOf(record);
  if (package.isEmpty()) return;
  if (!m_checked.remove(package)) m_checked << package;
  showChecks();
}

void Form4::toggleAll() {
  const FlexGridRows& rows = MSFlexGrid1->rows();
  QSet<QString> shown;
  for (int i = 0; i < rows.rowCount(); ++i) shown << packageOf(rows.record(rows.row(i)));
  if (m_checked.contains(shown)) {
    m_checked.subtract(shown);
  } else {
    m_checked.unite(shown);
  }
  showChecks();
}

void Form4::clearChecks() {
  m_checked.clear();
  showChecks();
}

void Form4::showChecks() {
  const FlexGridRows& rows = MSFlexGrid1->rows();
  int checked = 0;
  for (int i = 0; i < rows.rowCount(); ++i)
    if (m_checked.contains(packageOf(rows.record(rows.row(i))))) ++checked;
  MSFlexGrid1->checksChanged(m_checked.isEmpty()                         ? Qt::Unchecked
                             : checked == rows.rowCount() && checked > 0 ? Qt::Checked
                                                                         : Qt::PartiallyChecked);
  countShown();
}

QList<ListedBuild> Form4::listedBuilds() const {
  QList<ListedBuild> builds;
  for (const int record : MSFlexGrid1->rows().order())
    builds << ListedBuild{packageOf(record), apps->cell(record, ColBuild).text.trimmed()};
  return builds;
}

void Form4::setIcons(const QHash<QString, QIcon>& icons) {
  m_icons = icons;
  MSFlexGrid1->iconsChanged(!m_icons.isEmpty());
  fitColumns();
}

void Form4::addIcon(const QString& package, const QIcon& icon) {
  m_icons.insert(package, icon);
  MSFlexGrid1->iconsChanged(true);
  // The first one makes room for itself.
  if (m_icons.size() == 1) fitColumns();
}

void Form4::noteRead(const HeadsetIdentity& headset) {
  m_readAt = QTime::currentTime();
  m_headset = headset;
  m_answering = headset;
  showRead();
}

void Form4::noteAnswering(const HeadsetIdentity& answering) {
  if (answering.serial.isEmpty()) return;
  m_answering = answering;
  showRead();
}

bool Form4::isOfAnotherHeadset() const {
  return !m_headset.serial.isEmpty() && m_answering.serial != m_headset.serial;
}

void Form4::sayWork(const QString& work) {
  m_work = work;
  showRead();
}

void Form4::showRead() {
  if (!m_readAt.isValid()) return;
  QString text =
      (inFace(u"读取于"_s, u"Read"_s) + u" %1 · %2"_s).arg(m_readAt.toString(u"HH:mm"_s), m_headset.name());
  if (isOfAnotherHeadset())
    text = (u"⚠ "_s + inFace(u"现在是另一台头显"_s, u"Another headset answers"_s) + u": %1 · "_s)
               .arg(m_answering.name()) +
           text;
  if (!m_work.isEmpty()) text = m_work;
  lblRead->setCaption(text);
  lblRead->setToolTip(text);
}

/// Puts the buttons into as many rows as their captions need. Returns the right end and the top of the last.
QPoint Form4::layButtons(int left, int top) {
  int right = left - margin;
  for (Button* button : {cmdBackup, cmdRestore, cmdCheck, cmdUninstall, cmdRefresh}) {
    const int whole = std::min(button->sizeHint().width() + buttonPadding, width() - 2 * margin);
    if (right >= left && right + margin + whole > width() - margin) {
      right = left - margin;
      top += buttonHeight + rowGap;
    }
    button->setGeometry(right + margin, top, whole, buttonHeight);
    right += margin + whole;
  }
  return {right, top};
}

}  // namespace orvanta
