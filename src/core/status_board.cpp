#include "core/status_board.h"

namespace orvanta {

void StatusBoard::setConnection(const Status& connection) {
  const bool same = connection.readsAs(m_connection);
  m_connection = connection;
  if (!same) Q_EMIT changed();
}

void StatusBoard::setVerdict(const Status& verdict) {
  m_verdict = verdict;
  Q_EMIT changed();
  Q_EMIT verdictGiven(verdict);
}

void StatusBoard::clearVerdict() {
  if (!m_verdict) return;
  m_verdict.reset();
  Q_EMIT changed();
}

}  // namespace orvanta
