#include "core/status_board.h"

namespace orvanta {

void StatusBoard::setConnection(const Status& connection) {
  const bool same = connection.readsAs(m_connection);
  m_connection = connection;
  if (same) return;
  if (m_isAnswer) m_verdict.reset();
  Q_EMIT changed();
}

void StatusBoard::setVerdict(const Status& verdict) {
  setNotice(verdict);
  Q_EMIT verdictGiven(verdict);
}

void StatusBoard::setNotice(const Status& notice) {
  m_verdict = notice;
  m_isAnswer = false;
  Q_EMIT changed();
}

void StatusBoard::setAnswer(const Status& answer) {
  m_verdict = answer;
  m_isAnswer = true;
  Q_EMIT changed();
}

void StatusBoard::clearVerdict() {
  if (!m_verdict) return;
  m_verdict.reset();
  Q_EMIT changed();
}

}  // namespace orvanta
