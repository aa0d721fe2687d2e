#pragma once

#include <QObject>
#include <optional>
#include <utility>

namespace orvanta {

/// Who may run tools. Workflows rest on a strict order of their steps, while the window stays alive under
/// them: so one handler at a time has the turn, and a click that would begin a second one is refused.
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
    Turn* m_turn;
  };

  using QObject::QObject;

  /// Takes the turn; nothing while another handler has it.
  [[nodiscard]] std::optional<Holder> begin();

  bool taken() const { return m_taken; }
  /// Counts the turns begun so far, so that whoever began to ask outside of them can tell that one has come
  /// between.
  quint64 count() const { return m_count; }

  /// Ends the running tool; further tool calls of this turn return an empty text at once.
  void requestStop();
  bool stopped() const { return m_stopped; }

  /// A runner of this turn tells that a tool has started, and that it has ended.
  void noteToolStarted(const QString& name) { Q_EMIT toolStarted(name); }
  void noteToolEnded() { Q_EMIT toolEnded(); }

 Q_SIGNALS:
  void begun();
  void ended();
  void stopRequested();
  void toolStarted(const QString& name);
  void toolEnded();

 private:
  void end();

  bool m_taken = false;
  bool m_stopped = false;
  quint64 m_count = 0;
};

}  // namespace orvanta
