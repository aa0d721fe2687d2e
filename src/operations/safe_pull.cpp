#include "operations/safe_pull.h"

#include <QFileInfo>

#include "operations/command_lines.h"
#include "operations/local_copy.h"
#include "operations/replies.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

bool isSame(const DeviceSizes& device, const LocalSizes& local) {
  return device.files == local.files && device.bytes == local.bytes;
}

QString figures(qint64 files, qint64 bytes, bool isFolder) {
  const QString size = QString::number(bytes) + u" bytes"_s;
  return isFolder ? QString::number(files) + u" files, "_s + size : size;
}

QCoro::Task<DeviceSizes> askSizes(MenuContext& menu, QString remotePath) {
  const QString reply = co_await menu.ask(sizesLine(Host::current(), remotePath));
  DeviceSizes sizes = sizesIn(reply);
  // A call that was not made, or that was stopped, says nothing about the files.
  sizes.answered = remotePath.startsWith(u'/') && !menu.form().turn().stopped();
  co_return sizes;
}

bool saysPulled(const QString& reply, const PullTask& task, const DeviceSizes& expected) {
  if (!task.isFolder) return saysOneFilePulled(reply) && QFileInfo(task.place).isFile();
  if (!QFileInfo(task.place).isDir()) return false;
  // A folder that may not be listed looks empty to the tool.
  const bool isEmpty = expected.known() && expected.files == 0 && reply.contains("0 files pulled"_L1);
  return isEmpty || saysFolderPulled(reply);
}

}  // namespace

QCoro::Task<PullOutcome> pullSafely(MenuContext& menu, PullTask task) {
  PullOutcome outcome;
  DeviceSizes expected = co_await askSizes(menu, task.remotePath);
  LocalCopy copy(task.place);
  if (!copy.setAside()) {
    menu.LastReply.clear();
    outcome.notes =
        u"原有的文件不能改名，没有开始备份 (The earlier copy cannot be renamed; no backup was "
        "begun): "_s +
        task.place + u"\r\n"_s;
    co_return outcome;
  }
  {
    const PullProgress progress(menu.strips(), task.place, expected.known() ? expected.bytes : 0);
    co_await menu.execute(task.line);
  }
  bool compared = true;
  outcome.complete = saysPulled(menu.LastReply, task, expected);
  if (outcome.complete) {
    const LocalSizes here = localSizes(task.place);
    // An app that runs meanwhile writes into its folder.
    if (!expected.known() || !isSame(expected, here)) {
      const DeviceSizes now = co_await askSizes(menu, task.remotePath);
      if (now.known() || !expected.known()) expected = now;
    }
    // What the device could not let be read, the tool could not bring either: the rest must be the same.
    const bool comparable = expected.answered && (expected.known() || expected.files > 0);
    if (comparable && !isSame(expected, here)) {
      outcome.complete = false;
      outcome.notes = u"大小不一致 (The sizes differ)\r\n设备 (headset): "_s +
                      figures(expected.files, expected.bytes, task.isFolder) + u"\r\n备份 (backup): "_s +
                      figures(here.files, here.bytes, task.isFolder) + u"\r\n"_s;
    } else if (comparable && !expected.known()) {
      outcome.notes =
          u"设备上有读不到的内容，备份里没有 (The headset does not let some of it be read; the "
          "backup lacks that):\r\n"_s +
          expected.complaints;
    } else if (!comparable) {
      compared = false;
      outcome.notes = u"大小无法核对 (The size could not be compared)\r\n"_s;
    }
  }
  if (!outcome.complete) {
    const QString left = co_await copy.undo();
    outcome.notes += left;
    outcome.asBefore = copy.isAsBefore();
  } else if (!task.isFolder && compared) {
    copy.dropEarlierFile();
  } else if (!copy.earlier().isEmpty()) {
    const QString kept = u"原有的备份保存为 (The earlier copy is kept as): "_s + copy.earlier();
    menu.form().say(kept);
    menu.window().setNotice(kept);
  }
  co_return outcome;
}

QString failureText(const MenuContext& menu, const PullOutcome& outcome) {
  if (outcome.notes.isEmpty()) return menu.told();
  if (menu.LastReply.trimmed().isEmpty() && !menu.form().turn().stopped()) return outcome.notes;
  return menu.told().trimmed() + u"\r\n\r\n"_s + outcome.notes;
}

}  // namespace orvanta
