#include "table_maker.h"

#include <QtEndian>
#include <algorithm>

namespace orvanta::test {

namespace {

constexpr int kEntryCount = 64;
constexpr int kFillerEntry = 2;
constexpr int kFirstHop = 3;
constexpr quint32 kAbsent = 0xffffffff;
constexpr quint8 kReference = 1;
constexpr quint8 kString = 3;

template <typename T>
void add(QByteArray& bytes, T value) {
  const T little = qToLittleEndian(value);
  bytes.append(reinterpret_cast<const char*>(&little), sizeof(little));
}

QByteArray chunk(quint16 type, const QByteArray& header, const QByteArray& content) {
  QByteArray bytes;
  add<quint16>(bytes, type);
  add<quint16>(bytes, static_cast<quint16>(header.size() + 8));
  add<quint32>(bytes, static_cast<quint32>(header.size() + content.size() + 8));
  return bytes + header + content;
}

QByteArray stringPool(const QStringList& strings) {
  QByteArray offsets;
  QByteArray data;
  const auto addLength = [&data](qsizetype length) {
    if (length > 0x7f) data.append(static_cast<char>(0x80 | (length >> 8)));
    data.append(static_cast<char>(length & 0xff));
  };
  for (const QString& text : strings) {
    add<quint32>(offsets, static_cast<quint32>(data.size()));
    addLength(text.size());
    addLength(text.toUtf8().size());
    data += text.toUtf8() + '\0';
  }
  while (data.size() % 4 != 0) data.append('\0');
  QByteArray header;
  add<quint32>(header, static_cast<quint32>(strings.size()));
  add<quint32>(header, 0);
  add<quint32>(header, 0x100);
  add<quint32>(header, static_cast<quint32>(28 + offsets.size()));
  add<quint32>(header, 0);
  return chunk(0x0001, header, offsets + data);
}

/// Three letters are packed into fifteen bits.
QByteArray packed(const QByteArray& text, char base) {
  if (text.size() != 3) return text.leftJustified(2, '\0');
  const auto value = [&](int i) { return (text[i] - base) & 0x7f; };
  QByteArray bytes;
  bytes.append(static_cast<char>(0x80 | (value(2) << 2) | (value(1) >> 3)));
  bytes.append(static_cast<char>((value(1) << 5) | value(0)));
  return bytes;
}

QByteArray config(const TableVersion& version) {
  QByteArray bytes(64, '\0');
  bytes[0] = 64;
  bytes.replace(8, 2, packed(version.language, 'a'));
  bytes.replace(10, 2, packed(version.region, '0'));
  qToLittleEndian(static_cast<quint16>(version.density), bytes.data() + 14);
  bytes.replace(36, version.script.size(), version.script);
  return bytes;
}

QByteArray entry(TableForm form, quint8 type, quint32 data) {
  QByteArray bytes;
  const bool compact = form == TableForm::Compact;
  add<quint16>(bytes, compact ? 0 : 8);
  add<quint16>(bytes, compact ? static_cast<quint16>((type << 8) | 0x8) : 0);
  add<quint32>(bytes, compact ? data : 0);
  if (compact) return bytes;
  add<quint16>(bytes, 8);
  add<quint8>(bytes, 0);
  add<quint8>(bytes, type);
  add<quint32>(bytes, data);
  return bytes;
}

QByteArray typeChunk(const TableVersion& version, const QStringList& strings, TableForm form, int hops) {
  QByteArray entries;
  QList<quint32> offsets(kEntryCount, kAbsent);
  const auto put = [&](int index, quint8 type, quint32 data) {
    offsets[index] = static_cast<quint32>(entries.size());
    entries += entry(form, type, data);
  };
  const auto putString = [&](int index, const QString& text) {
    if (!text.isEmpty()) put(index, kString, static_cast<quint32>(strings.indexOf(text)));
  };
  putString(0, version.label);
  putString(1, version.icon);
  putString(kFillerEntry, QStringLiteral("filler"));
  for (int i = 0; i < hops; ++i)
    put(kFirstHop + i, kReference, i == 0 ? kLabelId : kHopId + static_cast<quint32>(i) - 1);

  QByteArray table;
  quint32 count = 0;
  for (int i = 0; i < kEntryCount; ++i) {
    const quint32 offset = offsets[i];
    if (form == TableForm::Sparse && offset == kAbsent) continue;
    ++count;
    if (form == TableForm::Sparse) add<quint16>(table, static_cast<quint16>(i));
    if (form == TableForm::Sparse || form == TableForm::Offset16) {
      add<quint16>(table, static_cast<quint16>(offset == kAbsent ? 0xffff : offset / 4));
    } else {
      add<quint32>(table, offset);
    }
  }
  QByteArray header;
  add<quint8>(header, 2);
  add<quint8>(header, form == TableForm::Sparse ? 1 : form == TableForm::Offset16 ? 2 : 0);
  add<quint16>(header, 0);
  add<quint32>(header, count);
  add<quint32>(header, static_cast<quint32>(84 + table.size()));
  return chunk(0x0201, header + config(version), table + entries);
}

}  // namespace

QByteArray makeTable(const QList<TableVersion>& versions, TableForm form, int hops) {
  QStringList strings = {QStringLiteral("filler")};
  for (const TableVersion& version : versions) strings << version.label << version.icon;
  strings.removeDuplicates();
  strings.removeAll(QString());
  QByteArray types;
  for (const TableVersion& version : versions) {
    types += typeChunk(version, strings, form, &version == &versions.first() ? hops : 0);
  }
  QByteArray specHeader;
  add<quint32>(specHeader, 2);
  add<quint32>(specHeader, kEntryCount);
  const QByteArray typeSpec = chunk(0x0202, specHeader, QByteArray(4 * kEntryCount, '\0'));

  const QByteArray typeNames = stringPool({QStringLiteral("attr"), QStringLiteral("string")});
  const QByteArray keyNames = stringPool({QStringLiteral("key")});
  QByteArray packageHeader;
  add<quint32>(packageHeader, 0x7f);
  packageHeader += QByteArray("o\0r\0v\0", 6).leftJustified(256, '\0');
  add<quint32>(packageHeader, 288);
  add<quint32>(packageHeader, 2);
  add<quint32>(packageHeader, static_cast<quint32>(288 + typeNames.size()));
  add<quint32>(packageHeader, 1);
  add<quint32>(packageHeader, 0);
  QByteArray header;
  add<quint32>(header, 1);
  return chunk(0x0002, header,
               stringPool(strings) + chunk(0x0200, packageHeader, typeNames + keyNames + typeSpec + types));
}

}  // namespace orvanta::test
