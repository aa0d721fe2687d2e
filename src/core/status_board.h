#pragma once

#include <QObject>
#include <optional>

#include "ui/status.h"

namespace orvanta {

/// What the main window's status line shows. The connection is always known; the verdict on the last action
/// takes precedence until the next action.
class StatusBoard : public QObject {
  Q_OBJECT

 public:
  /// Where the connection to the headset stands.
  void setConnection(const Status& connection);
  /// How an action ended, set during the workflow's turn; the next turn removes it.
  void setVerdict(const Status& verdict);
  /// The same for the answer to a press that a user who is elsewhere need not hear of.
  void setNotice(const Status& notice);
  /// The answer to a press of the line's button: in the connection's place until that changes.
  void setAnswer(const Status& answer);
  void clearVerdict();

  /// What is shown first: the verdict if there is one, else the connection.
  const Status& first() const { return m_verdict ? *m_verdict : m_connection; }
  /// Beside a verdict, what is wrong with the connection.
  std::optional<Status> second() const {
    return m_verdict && !m_isAnswer && m_connection.isTrouble() ? std::optional(m_connection) : std::nullopt;
  }

 Q_SIGNALS:
  void changed();
  /// An action has ended, for a user who may be elsewhere.
  void verdictGiven(const Status& verdict);

 private:
  Status m_connection;
  std::optional<Status> m_verdict;
  bool m_isAnswer = false;
};

}  // namespace orvanta
