#include "operations/safe_pull.h"

#include <QFileInfo>
#include <QTimer>

#include "adb/lines.h"
#include "adb/replies.h"
#include "backups/copy_note.h"
#include "backups/on_disk.h"
#include "operations/local_copy.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int arrivalInterval = 100;  // milliseconds

bool isSame(const DeviceSizes& device, const LocalSizes& local) {
  return device.files == local.files && device.bytes == local.bytes;
}

QCoro::Task<DeviceSizes> askSizes(MenuContext& menu, QString remotePath) {
  const QString reply = co_await menu.ask(sizesLine(Host::current(), remotePath));
  DeviceSizes sizes = sizesIn(reply);
  // A call that was not made or was stopped says nothing about the files.
  sizes.answered = remotePath.startsWith(u'/') && !menu.bench().turn.stopped();
  co_return sizes;
}

bool saysPulled(const QString& reply, const PullTask& task, const DeviceSizes& expected) {
  if (!task.isFolder) return saysOneFilePulled(reply) && QFileInfo(task.place).isFile();
  if (!QFileInfo(task.place).isDir()) return false;
  // A folder that adb may not list looks empty to it.
  const bool isEmpty = expected.known() && expected.files == 0 && saysNoFilesPulled(reply);
  return isEmpty || saysFolderPulled(reply);
}

/// The text for a failed pull about which the tool said nothing.
QString silence(const MenuContext& menu) {
  if (menu.LastReply.trimmed().isEmpty()) return menu.told();
  return inFace(u"传输中断了，adb 没有说原因"_s, u"The transfer broke off; adb did not say why"_s);
}

}  // namespace

QString figures(qint64 files, qint64 bytes, bool isFolder) {
  const QString size = inFace(u"%1 字节"_s, u"%1 bytes"_s, u"%1 bytes"_s).arg(bytes);
  return isFolder ? inFace(u"%1 个文件，"_s, u"%1 files, "_s, u"%1 files, "_s).arg(files) + size : size;
}

void settleCopies(Workbench& bench) {
  const QStringList settled = settleJournal([](const QJsonObject& note) {
    return note[u"kind"].toString() == copyNoteKind ? LocalCopy::settle(note) : Settled{false};
  });
  for (const QString& line : settled) bench.say(line);
}

QCoro::Task<PullOutcome> pullSafely(MenuContext& menu, PullTask task) {
  PullOutcome outcome;
  DeviceSizes expected = co_await askSizes(menu, task.remotePath);
  LocalCopy copy(task.place);
  settleCopies(menu.bench());
  const QString problem = copy.begin();
  if (!problem.isEmpty()) {
    menu.LastReply.clear();
    outcome.notes = problem + u"\r\n"_s;
    co_return outcome;
  }
  outcome.begun = true;
  {
    const PullProgress progress(menu.bench().turn, task.place, expected.known() ? expected.bytes : 0);
    QTimer arrival;
    QObject::connect(&arrival, &QTimer::timeout, &arrival, [&copy, &arrival] {
      if (copy.noteArrival()) arrival.stop();
    });
    arrival.start(arrivalInterval);
    co_await menu.execute(task.line);
  }
  bool compared = true;
  outcome.complete = saysPulled(menu.LastReply, task, expected);
  if (outcome.complete) {
    const LocalSizes here = localSizes(task.place);
    outcome.copied = here;
    // A running app may write to its folder meanwhile.
    if (!expected.known() || !isSame(expected, here)) {
      const DeviceSizes now = co_await askSizes(menu, task.remotePath);
      if (now.known() || !expected.known()) expected = now;
    }
    // adb could not copy what the device does not let anyone read; the rest must be equal.
    const bool comparable = expected.answered && (expected.known() || expected.files > 0);
    if (comparable && !isSame(expected, here)) {
      outcome.complete = false;
      outcome.notes = inFace(u"大小不一致"_s, u"The sizes differ"_s) + u"\r\n"_s +
                      inFace(u"设备"_s, u"headset"_s) + u": "_s +
                      figures(expected.files, expected.bytes, task.isFolder) + u"\r\n"_s +
                      inFace(u"备份"_s, u"backup"_s) + u": "_s +
                      figures(here.files, here.bytes, task.isFolder) + u"\r\n"_s;
    } else if (comparable && !expected.known()) {
      outcome.notes = inFace(u"设备上有读不到的内容，备份里没有"_s,
                             u"The headset does not let some of it be read; the backup lacks that"_s) +
                      u":\r\n"_s + expected.complaints;
    } else if (!comparable) {
      compared = false;
      outcome.notes = inFace(u"大小无法核对"_s, u"The size could not be compared"_s) + u"\r\n"_s;
    }
  }
  if (outcome.complete) {
    const bool synced = co_await isOnDisk(task.place);
    if (!synced) {
      outcome.complete = false;
      outcome.notes +=
          inFace(u"没有全部写到磁盘上"_s, u"Not all of it was written to the disk"_s) + u"\r\n"_s;
    }
  }
  if (!outcome.complete) {
    const QString left = co_await copy.undo();
    outcome.notes += left;
    outcome.asBefore = copy.isAsBefore();
  } else {
    copy.finish();
    if (!task.isFolder && compared) copy.dropEarlierFile();
    const auto bin = [&menu](const QString& path) { return menu.desktop().moveToWasteBin(path); };
    outcome.kept = copy.keepOneEarlier(bin);
    const QString kept = outcome.keptText(PullOutcome::Names::WithPath);
    if (!kept.isEmpty()) menu.bench().say(kept);
  }
  co_return outcome;
}

QString PullOutcome::keptText(Names names) const {
  const auto named = [names](const QString& path) {
    return names == Names::Short ? QFileInfo(path).fileName() : path;
  };
  QStringList lines;
  if (!kept.earlier.isEmpty())
    lines << inFace(u"原有的备份保存为"_s, u"The earlier copy is kept as"_s) + u": "_s + named(kept.earlier);
  if (kept.binned) lines << inFace(u"更早的一份在回收站"_s, u"the one before it: waste bin"_s);
  if (!kept.couldNotBin.isEmpty())
    lines << inFace(u"更早的一份放不进回收站，仍在"_s,
                    u"the one before it could not go to the waste bin and is still"_s) +
                 u": "_s + named(kept.couldNotBin);
  return lines.join(newsSeparator);
}

QString failureText(const MenuContext& menu, const PullOutcome& outcome) {
  const bool stopped = menu.bench().turn.stopped();
  const QString words = withoutProgress(menu.LastReply).trimmed();
  const bool toldAll = outcome.notes.isEmpty() && words == menu.LastReply.trimmed();
  if (toldAll && !stopped) return menu.told();
  QString text;
  if (stopped) text += inFace(u"已停止"_s, u"Stopped"_s) + u"\r\n"_s;
  if (outcome.begun && !outcome.complete)
    text += inFace(u"备份没有完成"_s, u"The backup is not complete"_s) + u"\r\n"_s;
  text += outcome.notes;
  if (!words.isEmpty()) {
    text += u"\r\n"_s + words;
  } else if (outcome.begun && !outcome.complete && !stopped) {
    text += u"\r\n"_s + silence(menu);
  }
  return text.trimmed();
}

}  // namespace orvanta
