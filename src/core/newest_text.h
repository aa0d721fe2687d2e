#pragma once

#include <QByteArray>
#include <QString>
#include <deque>

namespace orvanta {

/// A text that grows at its end, of which only the newest part is kept.
///
/// A position counts all characters written since the last clear(), kept or dropped.
class NewestText {
 public:
  /// At least this many characters are kept, and hardly more.
  static constexpr qsizetype mostCharacters = 32 * 1024 * 1024;

  void append(const QString& text);
  void clear();

  /// The position of the first kept character: the number of dropped ones.
  qsizetype first() const { return m_first; }
  qsizetype end() const { return m_first + kept(); }
  /// The characters from position `from` up to `to`, both between first() and end().
  QString part(qsizetype from, qsizetype to) const;

 private:
  /// One of the two holds the characters: a log needs one byte for each.
  struct Piece {
    QByteArray latin1;
    QString text;
  };

  qsizetype kept() const;

  std::deque<Piece> m_pieces;  // all of one length
  QString m_last;              // shorter than a piece
  qsizetype m_first = 0;
};

}  // namespace orvanta
