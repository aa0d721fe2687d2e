#include "backups/asked_ahead.h"

#include "core/turn.h"
#include "platform/awaited.h"

namespace orvanta {

AskedAhead::AskedAhead(Turn& turn, const QString& line) : m_asking(ChildProcess::create()) {
  connect(m_asking.get(), &ChildProcess::block, this, [this](const QByteArray& bytes) { m_reply += bytes; });
  connect(m_asking.get(), &ChildProcess::finished, this, [this] { m_ended = true; });
  connect(&turn, &Turn::stopRequested, m_asking.get(), [child = m_asking.get()] { child->kill(); });
  m_ended = m_asking->start(line).has_value();
}

QCoro::Task<QString> AskedAhead::reply() {
  if (!m_ended) co_await Emitted(m_asking.get(), &ChildProcess::finished);
  co_return QString::fromUtf8(m_reply);
}

}  // namespace orvanta
