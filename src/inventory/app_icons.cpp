#include "inventory/app_icons.h"

#include <QPointer>

#include "core/workbench.h"
#include "inventory/apps_form.h"
#include "inventory/icon_reading.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr qint64 longestReply = 64 * 1024 * 1024;  // bytes
constexpr qsizetype longestList = 16000;           // characters; Windows takes 32,767 in a line

}  // namespace

AppIcons::AppIcons(Workbench& bench, Form4& window)
    : m_bench(bench), m_window(window), m_quietDOS(bench, &m_quiet) {
  m_quietDOS.setBound({longestReply, true});
  connect(&m_quietDOS, &DOSOutputs::ReceiveOutputs, this, &AppIcons::take);
  connect(&bench.turn, &Turn::begun, &m_quiet, &Turn::requestStop);
  connect(&bench.turn, &Turn::ended, this, &AppIcons::ask, Qt::QueuedConnection);
  connect(&window, &Form4::unloaded, this, [this] {
    m_wanted.clear();
    m_quiet.requestStop();
  });
}

void AppIcons::show(bool canAsk) {
  m_wanted.clear();
  QHash<QString, QIcon> known;
  for (const ListedBuild& app : m_window.listedBuilds()) {
    const auto icon = m_cache.icon(app.package, app.build);
    if (!icon && canAsk) m_wanted.insert(app.package, app.build);
    if (icon && !icon->isNull()) known.insert(app.package, QIcon(QPixmap::fromImage(*icon)));
  }
  m_window.setIcons(known);
}

QCoro::Task<> AppIcons::ask() {
  if (m_wanted.isEmpty() || m_bench.turn.taken()) co_return;
  const auto quiet = m_quiet.begin();
  if (!quiet) co_return;
  QStringList packages;
  qsizetype length = 0;
  for (auto app = m_wanted.cbegin(); app != m_wanted.cend() && length < longestList; ++app) {
    packages << app.key();
    length += app.key().size() + 1;
  }
  m_line.clear();
  const QPointer<AppIcons> here(this);
  const QString line = iconsLine(Host::current(), packages);
  co_await m_bench.runQuietly(m_quietDOS, line);
  if (here.isNull()) co_return;
  // What the headset has left out it would leave out again. Where a handler has cut in, the rest comes later.
  if (!m_quiet.stopped())
    for (const QString& package : packages) m_wanted.remove(package);
  m_cache.trim();
}

void AppIcons::take(const QString& text) {
  const qsizetype before = m_line.size();
  m_line += text;
  for (qsizetype end = m_line.indexOf(u'\n', before); end >= 0; end = m_line.indexOf(u'\n')) {
    const auto printed = printedIconIn(QStringView(m_line).left(end));
    m_line.remove(0, end + 1);
    if (!printed || !m_wanted.contains(printed->package)) continue;
    const QImage icon = iconOf(printed->picture);
    m_cache.keep(printed->package, m_wanted.take(printed->package), icon);
    if (!icon.isNull()) m_window.addIcon(printed->package, QIcon(QPixmap::fromImage(icon)));
  }
}

}  // namespace orvanta
