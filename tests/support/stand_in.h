#pragma once

#include <QDataStream>
#include <QFile>
#include <QList>
#include <QStringList>
#include <QTemporaryDir>
#include <utility>

namespace orvanta {

/// The tools that lie beside a test of orvanta_test_with_stand_ins(): they print the prepared answer to a
/// call and record the call. For testing what a window does with an answer; the end-to-end tests use the real
/// tools.
class StandIn {
 public:
  /// What a call does, in this order.
  struct Answer {
    /// What a pull brings: names below its place, with the content. An empty name is the place itself, one
    /// that ends in a slash a folder.
    QList<std::pair<QString, QString>> files;
    QString reply;
    bool hangs = false;
  };

  StandIn() { qputenv("ORVANTA_STAND_IN", m_folder.path().toUtf8()); }

  /// From now on answers a call whose words after the tool's name, joined by blanks, match `call`, where a
  /// star is any text. The latest match counts; without a match nothing is printed.
  void answer(const QString& call, const Answer& answer) {
    QByteArray entry;
    QDataStream stream(&entry, QIODevice::WriteOnly);
    stream << call << answer.files << answer.reply << answer.hangs;
    m_answers.prepend(entry);
    QFile file(m_folder.filePath(QStringLiteral("answers")));
    if (file.open(QIODevice::WriteOnly)) file.write(m_answers);
  }
  void answer(const QString& call, const QString& reply) { answer(call, Answer{{}, reply}); }

  /// The words of the calls so far.
  QStringList calls() const { return notes(QStringLiteral("calls")); }
  /// The same, and forgets them.
  QStringList takeCalls() {
    const QStringList taken = calls();
    for (const QString& name : {QStringLiteral("calls"), QStringLiteral("lines")})
      QFile::remove(m_folder.filePath(name));
    return taken;
  }
  /// The calls so far as the system handed them over: on Windows the command lines as they are, elsewhere the
  /// tool and the words, joined by blanks.
  QStringList lines() const { return notes(QStringLiteral("lines")); }

 private:
  QStringList notes(const QString& name) const {
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::ReadOnly)) return {};
    QStringList found = QString::fromUtf8(file.readAll()).split(u'\n');
    found.removeLast();
    return found;
  }

  QTemporaryDir m_folder;
  QByteArray m_answers;
};

}  // namespace orvanta
