#pragma once

#include <QObject>
#include <QPointer>
#include <optional>
#include <utility>

namespace orvanta {

/// Who may run tools. Workflows need a strict order of steps while the window stays responsive, so one
/// handler at a time has the turn, and a click that would start a second one is refused.
class Turn : public QObject {
  Q_OBJECT

 public:
  /// The turn in a handler's hand; it ends with the holder.
  class Holder {
   public:
    Holder(Holder&& other) noexcept : m_turn(std::exchange(other.m_turn, nullptr)) {}
    Holder& operator=(Holder&&) = delete;
    ~Holder();

   private:
    friend class Turn;
    explicit Holder(Turn* turn) : m_turn(turn) {}
    QPointer<Turn> m_turn;
  };

  using QObject::QObject;

  /// Takes the turn. If another handler has it: nothing, and `refused` tells the user.
  [[nodiscard]] std::optional<Holder> begin();

  bool taken() const { return m_taken; }
  /// The number of turns begun so far, so that a question asked outside of turns can tell whether one began
  /// meanwhile.
  quint64 count() const { return m_count; }

  /// Ends the running tool; further tool calls of this turn return an empty text at once.
  void requestStop();
  bool stopped() const { return m_stopped; }

  /// A runner of this turn reports that a tool has started or ended.
  void noteToolStarted(const QString& name) { Q_EMIT toolStarted(name); }
  void noteToolEnded() { Q_EMIT toolEnded(); }
  /// How far a transfer is, if the total is known: bytes done, bytes in all. It can go over several tools,
  /// until noteProgressOver().
  void noteProgress(qint64 done, qint64 all) { Q_EMIT progressed(done, all); }
  void noteProgressOver() { Q_EMIT progressed(0, 0); }
  /// A question to the user is open: nothing runs that could be stopped.
  void noteQuestion() { Q_EMIT questionAsked(); }

 Q_SIGNALS:
  void begun();
  void ended();
  /// A handler was refused: its click does nothing.
  void refused();
  void stopRequested();
  void toolStarted(const QString& name);
  void toolEnded();
  /// 0 in all: the transfer is over.
  void progressed(qint64 done, qint64 all);
  void questionAsked();

 private:
  void end();

  bool m_taken = false;
  bool m_stopped = false;
  quint64 m_count = 0;
};

}  // namespace orvanta
