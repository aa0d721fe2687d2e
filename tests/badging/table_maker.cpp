#include "package_maker.h"

#include <QtEndian>
#include <initializer_list>

namespace orvanta::test {

namespace {

constexpr quint32 kEntryCount = 4;
constexpr quint32 kAbsent = 0xffffffff;
constexpr quint16 kString = 3;

template <typename T>
QByteArray numbers(std::initializer_list<T> values) {
  QByteArray bytes;
  for (const T value : values) {
    const T little = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof(little));
  }
  return bytes;
}

quint32 sizeOf(const QByteArray& bytes) {
  return static_cast<quint32>(bytes.size());
}

QByteArray chunk(quint16 type, const QByteArray& header, const QByteArray& content) {
  return numbers<quint16>({type, static_cast<quint16>(header.size() + 8)}) +
         numbers<quint32>({sizeOf(header) + sizeOf(content) + 8}) + header + content;
}

QByteArray stringPool(const QStringList& strings) {
  QByteArray offsets;
  QByteArray data;
  const auto addLength = [&data](qsizetype length) {
    if (length > 0x7f) data.append(static_cast<char>(0x80 | (length >> 8)));
    data.append(static_cast<char>(length & 0xff));
  };
  for (const QString& text : strings) {
    offsets += numbers<quint32>({sizeOf(data)});
    addLength(text.size());
    addLength(text.toUtf8().size());
    data += text.toUtf8() + '\0';
  }
  while (data.size() % 4 != 0) data.append('\0');
  const auto count = static_cast<quint32>(strings.size());
  return chunk(0x0001, numbers<quint32>({count, 0, 0x100, 28 + sizeOf(offsets), 0}), offsets + data);
}

QByteArray config(const TableVersion& version) {
  QByteArray bytes(64, '\0');
  bytes[0] = 64;
  bytes.replace(8, 2, version.language.leftJustified(2, '\0'));
  bytes.replace(14, 2, numbers<quint16>({static_cast<quint16>(version.density)}));
  return bytes;
}

QByteArray entry(TableForm form, qsizetype string) {
  const QByteArray data = numbers<quint32>({static_cast<quint32>(string)});
  if (form == TableForm::Compact) return numbers<quint16>({0, kString << 8 | 0x8}) + data;
  return numbers<quint16>({8, 0, 0, 0, 8, kString << 8}) + data;
}

QByteArray typeChunk(const TableVersion& version, const QStringList& strings, TableForm form) {
  // A chunk without any entry would be broken.
  const QString texts[kEntryCount] = {version.label, version.icon, QStringLiteral("filler"), {}};
  QByteArray offsets;
  QByteArray entries;
  quint32 count = 0;
  for (quint16 i = 0; i < kEntryCount; ++i) {
    const bool isAbsent = texts[i].isEmpty();
    if (form == TableForm::Sparse && isAbsent) continue;
    ++count;
    const quint32 offset = isAbsent ? kAbsent : sizeOf(entries);
    const auto quarter = static_cast<quint16>(offset / 4);
    if (form == TableForm::Sparse) {
      offsets += numbers<quint16>({i, quarter});
    } else if (form == TableForm::Offset16) {
      offsets += numbers<quint16>({quarter});
    } else {
      offsets += numbers<quint32>({offset});
    }
    if (!isAbsent) entries += entry(form, strings.indexOf(texts[i]));
  }
  const quint16 flags = form == TableForm::Sparse ? 1 : form == TableForm::Offset16 ? 2 : 0;
  const QByteArray header = numbers<quint16>({static_cast<quint16>(flags << 8 | 2), 0}) +
                            numbers<quint32>({count, 84 + sizeOf(offsets)});
  return chunk(0x0201, header + config(version), offsets + entries);
}

}  // namespace

QByteArray makeTable(const QList<TableVersion>& versions, TableForm form) {
  QStringList strings = {QStringLiteral("filler")};
  for (const TableVersion& version : versions) strings << version.label << version.icon;
  strings.removeDuplicates();
  strings.removeAll(QString());
  QByteArray types = chunk(0x0202, numbers<quint32>({2, kEntryCount}), QByteArray(4 * kEntryCount, '\0'));
  for (const TableVersion& version : versions) types += typeChunk(version, strings, form);

  const QByteArray typeNames = stringPool({QStringLiteral("attr"), QStringLiteral("string")});
  const QByteArray header = numbers<quint32>({0x7f}) + QByteArray("o\0r\0v\0", 6).leftJustified(256, '\0') +
                            numbers<quint32>({288, 2, 288 + sizeOf(typeNames), 1, 0});
  const QByteArray package = chunk(0x0200, header, typeNames + stringPool({QStringLiteral("key")}) + types);
  return chunk(0x0002, numbers<quint32>({1}), stringPool(strings) + package);
}

}  // namespace orvanta::test
