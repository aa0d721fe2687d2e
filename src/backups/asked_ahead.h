#pragma once

#include <QCoroTask>
#include <QObject>
#include <memory>

#include "platform/child_process.h"

namespace orvanta {

class Turn;

/// A question to the headset that is asked while another tool runs, so that its answer is there when it is
/// needed. A stop of the turn ends it.
class AskedAhead : public QObject {
  Q_OBJECT

 public:
  AskedAhead(Turn& turn, const QString& line);

  /// The whole answer, once it is there; empty when it could not be asked.
  QCoro::Task<QString> reply();

 private:
  std::unique_ptr<ChildProcess> m_asking;
  QByteArray m_reply;
  bool m_ended = false;
};

}  // namespace orvanta
