#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>

namespace orvanta {

/// Decodes UTF-8 in pieces that may cut a character in two. Bytes that are not UTF-8 become U+FFFD; a byte
/// order mark is a character like any other.
class Utf8Stream {
 public:
  /// The text of the next bytes, up to the last whole character.
  QString decode(QByteArrayView bytes);
  /// At the end of the stream: U+FFFD if it cut a character, else nothing.
  QString rest() const;

 private:
  QStringDecoder m_decoder{QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom};
  QByteArray m_cut;  // the beginning of an incomplete character
};

}  // namespace orvanta
