#include "monitor/remedies.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>

#include "adb/lines.h"
#include "core/workbench.h"
#include "platform/tool_place.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr std::chrono::seconds longestRestart{15};

/// What the user has to know where adb could not be put beside the program.
QString tellPlacing(const ToolPlacing& placing) {
  using Outcome = ToolPlacing::Outcome;
  Bilingual told;
  if (placing.outcome == Outcome::NotThere) {
    told = {
        u"这个文件夹里没有所需的文件。请选择 Android SDK Platform-Tools 的文件夹。"_s,
        u"This folder does not have what is needed. Choose the folder of the Android SDK Platform Tools."_s};
  } else if (placing.outcome == Outcome::NotRunnable) {
    told = {u"这个文件没有执行权限。"_s, u"You may not run this file."_s};
  } else {
    told = {u"不能写入本程序的文件夹。请以管理员身份执行："_s,
            u"You may not write into the folder of this program. As an administrator:"_s};
  }
  told.both = told.chinese + u"\n\n"_s + told.english;
  return told.shown() + u"\n\n"_s + placing.what;
}

}  // namespace

Remedies::Remedies(Workbench& bench, Ways ways) : m_bench(bench), m_ways(std::move(ways)) {
  m_limit.setSingleShot(true);
  m_limit.setInterval(longestRestart);
}

void Remedies::carryOut(ConnectionAction action) {
  switch (action) {
    case ConnectionAction::ChooseToolFolder:
      ChooseToolFolder();
      break;
    case ConnectionAction::RestartServer:
      RestartServer();
      break;
    case ConnectionAction::CopyUdevCommand:
      CopyUdevCommand();
      break;
    // The list has the steps in its place while it is empty.
    case ConnectionAction::ShowSteps:
    case ConnectionAction::ChooseDevice:
      m_ways.chooseDevice();
      break;
    case ConnectionAction::StartAnew:
      m_ways.startAnew();
      break;
    case ConnectionAction::None:
      break;
  }
}

QCoro::Task<> Remedies::ChooseToolFolder() {
  const QString title = inFace(u"adb 所在的文件夹"_s, u"The folder that adb is in"_s);
  const QStringList places = m_ways.toolPlaces();
  QString folder;
  int choice = 0;
  if (!places.isEmpty()) {
    ChoiceQuestion question;
    question.title = title;
    question.text = inFace(u"这些文件夹里有 adb，选一个放到本程序旁边"_s,
                           u"These have adb; choose which goes beside this program"_s);
    for (const QString& place : places) question.choices << QDir::toNativeSeparators(place);
    question.choices << inFace(u"其他文件夹…"_s, u"Another folder…"_s);
    choice = co_await m_bench.desktop.askChoice(question);
    if (choice < 0) co_return;
  }
  if (choice < places.size()) {
    folder = places[choice];
  } else {
    folder = co_await m_bench.desktop.askFolder(title);
  }
  if (folder.isEmpty()) co_return;
  const ToolPlacing placing = placeTool(folder, QCoreApplication::applicationDirPath());
  if (placing.outcome == ToolPlacing::Outcome::Placed) {
    m_ways.lookAnew();
    co_return;
  }
  MessageBox box;
  box.text = tellPlacing(placing);
  box.icon = BoxIcon::Warning;
  co_await m_bench.desktop.showBox(box);
}

QCoro::Task<> Remedies::RestartServer() {
  const auto turn = m_bench.turn.begin();
  if (!turn) co_return;
  // A server that does not answer keeps these two waiting as well.
  bool tooLong = false;
  const auto limit = connect(&m_limit, &QTimer::timeout, &m_bench.turn, [this, &tooLong] {
    tooLong = true;
    m_bench.turn.requestStop();
  });
  m_limit.start();
  const Host host = Host::current();
  co_await m_bench.objDOS.ExecuteCommand(killServerLine(host));
  co_await m_bench.objDOS.ExecuteCommand(startServerLine(host));
  m_limit.stop();
  disconnect(limit);
  if (tooLong) {
    m_bench.status.setVerdict(
        {Status::Sign::Error,
         {u"adb 没有随之结束，请重新启动电脑"_s, u"adb did not end: restart the computer"_s},
         {u"也可以在任务管理器里结束名为 adb 的进程。"_s,
          u"Or end the process called adb in the task manager or system monitor."_s}});
  }
  m_ways.lookAnew();
}

void Remedies::CopyUdevCommand() {
  QGuiApplication::clipboard()->setText(udevCommand());
  m_bench.status.setAnswer({Status::Sign::Hint,
                            {u"已复制，请在终端里运行"_s, u"Copied: run it in a terminal"_s},
                            {u"然后拔下数据线再插上。"_s, u"Then unplug the cable and plug it in again."_s}});
}

}  // namespace orvanta
