#include "core/workbench.h"

#include <QPointer>
#include <utility>

#include "adb/replies.h"
#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

Workbench::Workbench(Desktop& user) : desktop(user) {
  connect(&objDOS, &DOSOutputs::ReceiveOutputs, this, [this](const QString& CommandOutputs) {
    if (!state.CommandBusy) console.append(CommandOutputs);
  });
  connect(&turn, &Turn::begun, this, [this] { m_toldInTurn.clear(); });
  connect(&turn, &Turn::begun, &status, &StatusBoard::clearVerdict);
  connect(&turn, &Turn::stopRequested, this, [this] { sayUnderVerdict(inFace(u"已停止"_s, u"Stopped"_s)); });
}

QCoro::Task<QString> Workbench::runQuietly(DOSOutputs& runner, std::optional<QString> line) {
  // Another runner has nothing to keep out of the console; the flag is the workflows' own.
  const bool ours = &runner == &objDOS;
  if (ours) state.CommandBusy = true;
  if (line) runner.setCommandLine(*line);
  const QPointer<DOSOutputs> lasting(&runner);
  const QString text = co_await runner.ExecuteCommand();
  // The main runner goes with this object.
  if (lasting.isNull()) co_return QString();
  if (ours) state.CommandBusy = false;
  if (!runner.answered()) co_return QString();
  co_return withoutServerNotes(text);
}

void Workbench::sayUnderVerdict(const QString& message) {
  if (m_starting) {
    m_underVerdict += u"\r\n"_s + message + u"\r\n"_s;
  } else {
    say(message);
  }
}

void Workbench::endStart() {
  m_starting = false;
  console.append(std::exchange(m_underVerdict, QString()));
}

void Workbench::toolStarted(const QString& tool) {
  m_missingTools.remove(tool);
}

QCoro::Task<> Workbench::startFailed(QString tool, QString commandLine, QString text) {
  sayUnderVerdict(designed(u"Command Error: ") + u"\r\n"_s + commandLine + u"\r\n"_s);
  // Without a turn it is the watcher, which would show a box every two seconds.
  const bool told = turn.taken() ? m_toldInTurn.contains(tool) : m_missingTools.contains(tool);
  m_missingTools.insert(tool);
  if (turn.taken()) m_toldInTurn.insert(tool);
  if (!told) co_await criticalMessage(text);
}

void Workbench::printedTooMuch(const QString& tool, qint64 bytes) {
  sayUnderVerdict(inFace(u"%1 的输出超过 %2 MiB，已被结束"_s, u"%1 printed more than %2 MiB and was ended"_s)
                      .arg(tool)
                      .arg(bytes >> 20));
}

QCoro::Task<> Workbench::criticalMessage(QString text) {
  MessageBox box;
  box.text = text;
  box.icon = BoxIcon::Critical;
  co_await desktop.showBox(box);
}

}  // namespace orvanta
