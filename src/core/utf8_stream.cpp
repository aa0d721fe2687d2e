#include "core/utf8_stream.h"

namespace orvanta {

namespace {

/// How many bytes at the end of `bytes` are the beginning of an incomplete character.
qsizetype cutLength(QByteArrayView bytes) {
  constexpr qsizetype longest = 4;
  for (qsizetype length = 1; length < longest && length <= bytes.size(); ++length) {
    const auto byte = static_cast<uchar>(bytes[bytes.size() - length]);
    if ((byte & 0xC0) == 0x80) continue;
    const qsizetype whole = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
    return length < whole ? length : 0;
  }
  return 0;
}

}  // namespace

QString Utf8Stream::decode(QByteArrayView bytes) {
  m_cut.append(bytes);
  const qsizetype whole = m_cut.size() - cutLength(m_cut);
  const QString text = m_decoder.decode(QByteArrayView(m_cut).first(whole));
  m_cut.remove(0, whole);
  return text;
}

QString Utf8Stream::rest() const {
  return m_cut.isEmpty() ? QString() : QString(QChar::ReplacementCharacter);
}

}  // namespace orvanta
