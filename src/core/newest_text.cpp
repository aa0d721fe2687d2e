#include "core/newest_text.h"

#include <algorithm>

namespace orvanta {

namespace {
constexpr qsizetype pieceLength = 64 * 1024;
}

qsizetype NewestText::kept() const {
  return static_cast<qsizetype>(m_pieces.size()) * pieceLength + m_last.size();
}

void NewestText::append(const QString& text) {
  m_last += text;
  qsizetype taken = 0;
  for (; m_last.size() - taken >= pieceLength; taken += pieceLength) {
    const QStringView piece = QStringView(m_last).sliced(taken, pieceLength);
    const bool isLatin1 =
        std::all_of(piece.begin(), piece.end(), [](QChar c) { return c.unicode() < 0x100; });
    m_pieces.push_back(isLatin1 ? Piece{piece.toLatin1(), {}} : Piece{{}, piece.toString()});
  }
  m_last.remove(0, taken);
  while (kept() - pieceLength >= mostCharacters) {
    m_pieces.pop_front();
    m_first += pieceLength;
  }
}

void NewestText::clear() {
  *this = NewestText();
}

QString NewestText::part(qsizetype from, qsizetype to) const {
  QString found;
  found.reserve(to - from);
  while (from < to) {
    const auto index = static_cast<size_t>((from - m_first) / pieceLength);
    const qsizetype offset = (from - m_first) % pieceLength;
    const qsizetype length = std::min(to - from, pieceLength - offset);
    if (index == m_pieces.size()) {
      found += QStringView(m_last).sliced(offset, length);
    } else if (m_pieces[index].text.isEmpty()) {
      found += QLatin1String(m_pieces[index].latin1.constData() + offset, length);
    } else {
      found += QStringView(m_pieces[index].text).sliced(offset, length);
    }
    from += length;
  }
  return found;
}

}  // namespace orvanta
