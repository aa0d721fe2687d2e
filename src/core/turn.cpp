#include "core/turn.h"

namespace orvanta {

Turn::Holder::~Holder() {
  if (Turn* turn = m_turn) turn->end();
}

std::optional<Turn::Holder> Turn::begin() {
  if (m_taken) {
    Q_EMIT refused();
    return std::nullopt;
  }
  m_taken = true;
  m_stopped = false;
  ++m_count;
  Q_EMIT begun();
  return Holder(this);
}

void Turn::requestStop() {
  if (!m_taken || m_stopped) return;
  m_stopped = true;
  Q_EMIT stopRequested();
}

void Turn::end() {
  m_taken = false;
  m_stopped = false;
  Q_EMIT ended();
}

}  // namespace orvanta
