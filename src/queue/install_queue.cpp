#include "queue/install_queue.h"

#include <QFileInfo>
#include <QScopedValueRollback>
#include <QThread>
#include <algorithm>
#include <utility>

#include "adb/installed_build.h"
#include "adb/lines.h"
#include "adb/replies.h"
#include "adb/storage.h"
#include "apk/package_reader.h"
#include "core/paths.h"
#include "install/expansion_files.h"
#include "install/guard.h"
#include "monitor/installed_build.h"
#include "platform/awaited.h"
#include "queue/bundle_unpacking.h"
#include "queue/given_paths.h"
#include "queue/package_icon.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

using Stage = QueueItem::Stage;

constexpr int mostTries = 5;

/// How often it is worth to be tried after it ended like this. A lost link is not always called so by adb.
int triesAfter(const InstallRun& run) {
  int tries = 1;
  const auto look = [&tries](const std::optional<Outcome>& outcome) {
    if (!outcome) return;
    if (outcome->kind == Outcome::Kind::NotReached) tries = mostTries;
    if (outcome->kind == Outcome::Kind::Unclear || outcome->kind == Outcome::Kind::Empty)
      tries = qMax(tries, 2);
  };
  look(run.install);
  for (const SentFile& file : run.files) look(file.push);
  return tries;
}

/// Looks into the folders on a thread of its own: they can be on a slow disk.
QCoro::Task<GivenPaths> readInBackground(QStringList paths) {
  GivenPaths given;
  const std::unique_ptr<QThread> thread(QThread::create([&given, paths] { given = readGiven(paths); }));
  thread->start();
  co_await Ended(thread.get());
  thread->wait();
  co_return given;
}

}  // namespace

QString QueueItem::title() const {
  const QString& label = fields[FieldLabel];
  return label.isEmpty() ? QFileInfo(path).fileName() : label;
}

bool QueueItem::isNewerOnHeadset() const {
  return onHeadset && compareBuilds(*onHeadset, fields[FieldVersionCode]) == BuildVerdict::Newer;
}

InstallQueue::InstallQueue(Workbench& main, std::function<void()> chooseDevice)
    : m_main(main),
      m_chooseDevice(std::move(chooseDevice)),
      m_unattended(main.desktop),
      m_bench(m_unattended),
      m_install(m_bench, nullptr, {}) {
  connect(&m_bench.turn, &Turn::stopRequested, this, [this] {
    m_stopped = m_stopped || !m_skipsThis;
    if (m_unpacked) m_unpacked->stop();
  });
  connect(&m_main.turn, &Turn::stopRequested, this, [this] {
    if (m_busy) stop();
  });
  connect(&m_bench.turn, &Turn::progressed, this, [this](qint64 done, qint64) {
    m_doneBytes = qMin(m_throughBytes + done, m_allBytes);
    Q_EMIT progressed();
  });
}

InstallQueue::~InstallQueue() = default;

void InstallQueue::set(qsizetype row, Stage state, const Bilingual& words) {
  item(row).state = state;
  item(row).words = words;
  Q_EMIT changed();
}

void InstallQueue::stop() {
  m_stopped = true;
  m_bench.turn.requestStop();
}

void InstallQueue::skip(qsizetype row) {
  const Stage state = item(row).state;
  if (state == Stage::Ready) {
    set(row, Stage::Skipped);
  } else if (state == Stage::Skipped) {
    set(row, Stage::Ready);
  } else if (state == Stage::Running || state == Stage::Waiting) {
    m_skipsThis = true;
    m_bench.turn.requestStop();
  }
}

void InstallQueue::retry() {
  for (QueueItem& each : m_items) {
    if (each.state != Stage::Failed && each.state != Stage::Partly) continue;
    each.state = Stage::Ready;
    each.words = {};
  }
  Q_EMIT changed();
}

QCoro::Task<> InstallQueue::add(QStringList paths) {
  const GivenPaths given = co_await readInBackground(paths);
  for (const QString& path : given.packages) {
    const bool known = std::any_of(m_items.begin(), m_items.end(),
                                   [&path](const QueueItem& each) { return each.path == path; });
    if (!known) m_items.push_back({path});
  }
  for (const QString& path : given.expansionFiles) {
    m_items.push_back({path, Stage::Unusable});
    m_items.back().files << path;
  }
  for (const QString& path : given.others)
    m_items.push_back({path,
                       Stage::Unusable,
                       {u"既不是安装包，也不是扩展文件"_s, u"Neither a package nor an expansion file"_s}});
  if (given.tooMany) {
    m_items.push_back({paths.value(0),
                       Stage::Unusable,
                       {u"文件太多，没有全部列出"_s, u"Too many files; not all are listed"_s}});
  }
  Q_EMIT changed();
  co_await read();
}

QCoro::Task<> InstallQueue::read() {
  // What is added while something runs is read when that has ended.
  if (m_busy) co_return;
  m_busy = true;
  Q_EMIT changed();
  {
    const auto turn = m_bench.turn.begin();
    for (qsizetype row = 0; row < std::ssize(m_items); ++row) {
      if (item(row).state != Stage::Unread || m_bench.turn.stopped()) continue;
      if (isBundle(item(row).path)) {
        readBundleOf(item(row));
      } else {
        co_await readPackageOf(row);
      }
      Q_EMIT changed();
    }
    // Files that were given by themselves go to the package that they name.
    for (QueueItem& file : m_items) {
      if (file.state != Stage::Unusable || file.files.isEmpty()) continue;
      const QString package = packageOfExpansionFile(QFileInfo(file.path).fileName());
      file.words = {u"没有它所属的安装包"_s, u"The package that it belongs to is not in the list"_s};
      for (QueueItem& each : m_items) {
        if (package.isEmpty() || each.fields[FieldPackage] != package) continue;
        each.files << file.files;
        each.bytes += QFileInfo(file.path).size();
        // Otherwise it would never be sent.
        if (each.hasEnded() && each.state != Stage::Unusable) {
          each.state = Stage::Ready;
          each.words = {};
        }
        file.files.clear();
        break;
      }
    }
    std::erase_if(m_items, [](const QueueItem& each) {
      return each.state == Stage::Unusable && each.files.isEmpty() &&
             each.path.endsWith(u".obb"_s, Qt::CaseInsensitive);
    });
  }
  // While the main window asks the headset this is not worth waiting for: start() makes up for it.
  if (!m_main.turn.taken()) {
    const auto outer = m_main.turn.begin();
    co_await askBuilds();
  }
  m_busy = false;
  Q_EMIT changed();
}

QCoro::Task<> InstallQueue::readPackageOf(qsizetype row) {
  LoadedPackage& package = m_bench.state.package;
  package.ApkPath = item(row).path;
  package.ApkFileName = BaseName(package.ApkPath);
  package.ManifestFields = {};
  package.PermissionCount = 0;
  co_await readPackage(m_bench);
  QueueItem& read = item(row);
  read.fields = package.ManifestFields;
  if (package.package().isEmpty() && m_bench.turn.stopped()) {
    read.words = {u"没有读完，再次加入时会读取"_s,
                  u"Not read to the end; it is read when it is added again"_s};
    co_return;
  }
  if (package.package().isEmpty()) {
    read.state = Stage::Unusable;
    read.words = {u"不是可读的安装包"_s, u"This is no readable package"_s};
    co_return;
  }
  read.words = {};
  read.icon = iconOf(read.path, read.fields[FieldIcon]);
  read.bytes = QFileInfo(read.path).size();
  ExpansionFileList list;
  listExpansionFiles(surroundingsOf(read.path, package.package()), HostStyle::native(), list);
  for (size_t i = 1; i < list.ObbFilePaths.size() && i <= static_cast<size_t>(list.ObbFileCount); ++i) {
    read.ownFiles << list.ObbFilePaths[i];
    read.bytes += QFileInfo(list.ObbFilePaths[i]).size();
  }
  read.state = Stage::Ready;
}

void InstallQueue::readBundleOf(QueueItem& read) {
  const Bundle bundle = readBundle(read.path);
  read.fields[FieldPackage] = bundle.package;
  read.fields[FieldLabel] = bundle.label;
  read.fields[FieldVersionName] = bundle.version;
  read.fields[FieldVersionCode] = bundle.build;
  read.icon = pictureIn(bundle.icon);
  read.bytes = QFileInfo(read.path).size();
  read.words = bundle.problem;
  read.state = bundle.problem.english.isEmpty() ? Stage::Ready : Stage::Unusable;
}

QCoro::Task<> InstallQueue::askBuilds() {
  const auto turn = m_bench.turn.begin();
  const QString reply = co_await m_bench.runQuietly(m_bench.objDOS, packageBuildsLine(Host::current()));
  if (!listsPackages(reply)) co_return;
  const QHash<QString, QString> builds = buildsIn(reply);
  for (QueueItem& each : m_items) {
    if (!each.fields[FieldPackage].isEmpty()) each.onHeadset = builds.value(each.fields[FieldPackage]);
  }
}

QCoro::Task<bool> InstallQueue::mayStart() {
  const Headset& known = m_main.state.headset();
  SendPlan all;
  QString text;
  const auto add = [&](const QString& title, const SendPlan& plan) {
    for (const Bilingual& objection : objectionsTo(plan, known))
      text += title + objection.shown() + u"\r\n\r\n"_s;
  };
  for (const QueueItem& each : m_items) {
    if (each.state != Stage::Ready) continue;
    all.packageBytes += each.bytes;
    SendPlan plan;
    plan.build = each.fields[FieldVersionCode];
    if (each.isNewerOnHeadset()) plan.newerBuild = *each.onHeadset;
    add(each.title() + u": "_s, plan);
  }
  add(QString(), all);
  if (text.isEmpty()) co_return true;
  MessageBox question;
  question.text = text + inFace(u"仍要安装吗？"_s, u"Install anyway?"_s);
  question.icon = BoxIcon::Warning;
  question.buttons = BoxButtons::YesNo;
  question.preselected = BoxAnswer::No;
  const BoxAnswer answer = co_await m_main.desktop.showBox(question);
  co_return answer == BoxAnswer::Yes;
}

QCoro::Task<> InstallQueue::start() {
  if (m_busy) co_return;
  if (m_main.state.headset().unchosen > 1) {
    co_await mayBegin(m_main, SendPlan(), m_chooseDevice);
    co_return;
  }
  const auto outer = m_main.turn.begin();
  if (!outer) co_return;
  const QScopedValueRollback hold(m_main.state.WatcherHold, true);
  m_busy = true;
  m_stopped = false;
  m_traits = {};
  m_throughBytes = m_doneBytes = m_allBytes = 0;
  Q_EMIT changed();
  // What is known of one headset says nothing about another.
  const QString& serial = m_main.state.headset().serial;
  if (!serial.isEmpty() && serial != std::exchange(m_serial, serial)) {
    for (QueueItem& each : m_items) {
      each.onHeadset.reset();
      each.installed.reset();
    }
  }
  const bool anyUnknown = std::any_of(m_items.begin(), m_items.end(), [](const QueueItem& each) {
    return each.state == Stage::Ready && !each.onHeadset;
  });
  if (anyUnknown) co_await askBuilds();
  const bool goesOn = co_await mayStart();
  if (goesOn) {
    m_bench.state.Grant = m_main.state.Grant;
    for (const QueueItem& each : m_items) m_allBytes += each.state == Stage::Ready ? each.bytes : 0;
    for (qsizetype row = 0; row < std::ssize(m_items) && !m_stopped; ++row) {
      if (item(row).state != Stage::Ready) continue;
      m_skipsThis = false;
      co_await install(row);
      m_throughBytes += item(row).bytes;
      m_doneBytes = m_throughBytes;
      Q_EMIT progressed();
    }
    m_main.desktop.Beep();
    const auto good = std::count_if(m_items.begin(), m_items.end(),
                                    [](const QueueItem& each) { return each.state == Stage::Done; });
    const auto bad = std::count_if(m_items.begin(), m_items.end(), [](const QueueItem& each) {
      return each.state == Stage::Failed || each.state == Stage::Partly;
    });
    m_main.status.setVerdict({bad == 0 ? Status::Sign::Good : Status::Sign::Warning,
                              {u"队列：%1 个已安装，%2 个没有"_s.arg(good).arg(bad),
                               u"Queue: %1 installed, %2 not"_s.arg(good).arg(bad)}});
  }
  m_busy = false;
  Q_EMIT changed();
  if (goesOn) Q_EMIT ended();
  const bool more = std::any_of(m_items.begin(), m_items.end(),
                                [](const QueueItem& each) { return each.state == Stage::Unread; });
  if (more) co_await read();
}

void InstallQueue::load(const QueueItem& loaded) {
  LoadedPackage& package = m_bench.state.package;
  package.ApkPath = loaded.path;
  package.splits.clear();
  package.ManifestFields = loaded.fields;
  if (m_unpacked) {
    package.splits = m_unpacked->packages();
    package.ApkPath = package.splits.takeFirst();
  }
  package.ApkFileName = BaseName(package.ApkPath);
}

QCoro::Task<> InstallQueue::install(qsizetype row) {
  set(row, Stage::Running);
  if (isBundle(item(row).path)) {
    const bool ready = co_await unpack(row);
    if (!ready) {
      m_unpacked.reset();
      co_return;
    }
  }
  InstallRun run;
  for (int tries = 1; !m_stopped && !m_skipsThis; ++tries) {
    load(item(row));
    InstallWorkflow::Unattended wanted;
    wanted.files = item(row).files;
    if (m_unpacked) wanted.files << m_unpacked->expansionFiles();
    wanted.installed = item(row).installed;
    run = co_await m_install.installUnattended(wanted);
    if (run.install && run.install->kind == Outcome::Kind::Success) item(row).installed = run.install;
    if (m_stopped || m_skipsThis || tries >= triesAfter(run)) break;
    co_await awaitHeadset(row);
    if (!m_stopped && !m_skipsThis) set(row, Stage::Running);
  }
  m_unpacked.reset();
  end(row, run);
}

void InstallQueue::end(qsizetype row, const InstallRun& run) {
  if (m_skipsThis) {
    const bool there = item(row).installed.has_value();
    set(row, there ? Stage::Partly : Stage::Skipped,
        there ? Bilingual{u"已跳过：应用已安装，文件没有传完"_s,
                          u"Skipped: the app is installed, but not all of its files are there"_s}
              : Bilingual{u"已跳过"_s, u"Skipped"_s});
    return;
  }
  const Status verdict = verdictOn(run);
  Stage state = Stage::Failed;
  if (verdict.sign == Status::Sign::Good) state = Stage::Done;
  if (verdict.sign == Status::Sign::Warning) state = Stage::Partly;
  set(row, state, verdict.sentence);
  // The next try begins with the package again where it may have changed meanwhile.
  if (state == Stage::Failed || state == Stage::Done) item(row).installed.reset();
  if (state == Stage::Done) item(row).onHeadset = item(row).fields[FieldVersionCode];
}

QCoro::Task<> InstallQueue::awaitHeadset(qsizetype row) {
  set(row, Stage::Waiting);
  const auto turn = m_bench.turn.begin();
  co_await m_bench.runQuietly(m_bench.objDOS, waitLine(Host::current()));
}

QCoro::Task<bool> InstallQueue::unpack(qsizetype row) {
  for (int tries = 1; !m_traits.known() && !m_stopped && !m_skipsThis && tries <= mostTries; ++tries) {
    if (tries > 1) co_await awaitHeadset(row);
    const auto turn = m_bench.turn.begin();
    const QString reply = co_await m_bench.runQuietly(m_bench.objDOS, traitsLine(Host::current()));
    m_traits = HeadsetTraits::in(reply);
  }
  if (m_stopped || m_skipsThis) {
    set(row, m_skipsThis ? Stage::Skipped : Stage::Failed, {u"已停止"_s, u"Stopped"_s});
    co_return false;
  }
  if (!m_traits.known()) {
    set(row, Stage::Failed, {u"头显没有回答"_s, u"The headset gave no answer"_s});
    co_return false;
  }
  set(row, Stage::Running);
  const auto turn = m_bench.turn.begin();
  const BundleChoice choice = chooseParts(readBundle(item(row).path).entries, m_traits);
  if (!choice.problem.english.isEmpty()) {
    set(row, Stage::Failed, choice.problem);
    co_return false;
  }
  m_unpacked = std::make_unique<UnpackedBundle>(item(row).path, choice);
  m_bench.turn.noteToolStarted(u"unzip"_s);
  const Bilingual problem = co_await m_unpacked->unpack();
  m_bench.turn.noteToolEnded();
  if (!problem.english.isEmpty()) {
    set(row, m_skipsThis ? Stage::Skipped : Stage::Failed, problem);
    co_return false;
  }
  load(item(row));
  m_bench.state.package.ManifestFields = {};
  co_await readPackage(m_bench);
  const auto& fields = m_bench.state.package.ManifestFields;
  if (fields[FieldPackage].isEmpty()) {
    set(row, Stage::Failed, {u"里面没有可读的安装包"_s, u"It holds no readable package"_s});
    co_return false;
  }
  item(row).fields = fields;
  if (item(row).icon.isNull()) item(row).icon = iconOf(m_bench.state.package.ApkPath, fields[FieldIcon]);
  Q_EMIT changed();
  co_return true;
}

QString InstallQueue::report() const {
  QString text;
  for (const QueueItem& each : m_items) {
    QString sign = u"–"_s;
    if (each.state == Stage::Done) sign = u"✓"_s;
    if (each.state == Stage::Failed || each.state == Stage::Partly || each.state == Stage::Unusable)
      sign = u"✗"_s;
    text += sign + u' ' + each.title() + u" ["_s + QFileInfo(each.path).fileName() + u"] "_s +
            each.words.shown() + u'\n';
  }
  return text;
}

}  // namespace orvanta
