#include "package_parts.h"

#include <QMap>
#include <QStringList>
#include <QtEndian>
#include <algorithm>
#include <initializer_list>

namespace orvanta {

using namespace Qt::StringLiterals;

namespace {

// Kinds of chunks.
constexpr quint16 kStrings = 0x0001;
constexpr quint16 kTable = 0x0002;
constexpr quint16 kManifest = 0x0003;
constexpr quint16 kSpaceBegins = 0x0100;
constexpr quint16 kSpaceEnds = 0x0101;
constexpr quint16 kElementBegins = 0x0102;
constexpr quint16 kElementEnds = 0x0103;
constexpr quint16 kNumbers = 0x0180;
constexpr quint16 kPackage = 0x0200;
constexpr quint16 kType = 0x0201;
constexpr quint16 kTypeSpec = 0x0202;
// Kinds of values.
constexpr quint8 kReferenceValue = 0x01;
constexpr quint8 kStringValue = 0x03;
constexpr quint8 kIntegerValue = 0x10;
constexpr quint8 kBooleanValue = 0x12;

constexpr quint32 kNone = 0xffffffff;
constexpr QLatin1StringView kSpace("http://schemas.android.com/apk/res/android");

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

quint32 countOf(const auto& list) {
  return static_cast<quint32>(list.size());
}

QByteArray chunk(quint16 type, const QByteArray& header, const QByteArray& content) {
  return numbers<quint16>({type, static_cast<quint16>(header.size() + 8)}) +
         numbers<quint32>({sizeOf(header) + sizeOf(content) + 8}) + header + content;
}

QByteArray stringPool(const QStringList& strings) {
  QByteArray offsets;
  QByteArray data;
  for (const QString& text : strings) {
    offsets += numbers<quint32>({sizeOf(data)});
    // A length of two bytes more has the upper part first, with the highest bit set.
    const auto length = static_cast<quint32>(text.size());
    if (length > 0x7fff) data += numbers<quint16>({static_cast<quint16>(0x8000 | (length >> 16))});
    data += numbers<quint16>({static_cast<quint16>(length)});
    for (const QChar letter : text) data += numbers<quint16>({letter.unicode()});
    data += QByteArray(2, '\0');
  }
  while (data.size() % 4 != 0) data.append('\0');
  return chunk(kStrings, numbers<quint32>({countOf(strings), 0, 0, 28 + sizeOf(offsets), 0}), offsets + data);
}

/// Writes a manifest from front to back. Names of attributes with a number come first in the pool of strings,
/// where the numbers are listed beside them.
class ManifestWriter {
 public:
  QByteArray write(const ManifestElement& root) {
    collectNumbers(root);
    QByteArray numberList;
    for (auto it = m_numbers.begin(); it != m_numbers.end(); ++it) {
      numberList += numbers<quint32>({it.key()});
      m_strings << it.value();
    }
    const QByteArray space = numbers<quint32>({text(u"android"_s), text(kSpace)});
    const QByteArray nodes = node(kSpaceBegins, space) + element(root) + node(kSpaceEnds, space);
    return chunk(kManifest, {}, stringPool(m_strings) + chunk(kNumbers, {}, numberList) + nodes);
  }

 private:
  void collectNumbers(const ManifestElement& element) {
    for (const ManifestAttribute& attribute : element.attributes)
      if (attribute.number != 0) m_numbers.insert(attribute.number, attribute.name);
    for (const ManifestElement& child : element.children) collectNumbers(child);
  }

  quint32 text(const QString& string) {
    // A name without a number may read like one with.
    qsizetype at = m_strings.indexOf(string, m_numbers.size());
    if (at < 0) {
      at = m_strings.size();
      m_strings << string;
    }
    return static_cast<quint32>(at);
  }

  static QByteArray node(quint16 type, const QByteArray& content) {
    return chunk(type, numbers<quint32>({1, kNone}), content);
  }

  QByteArray element(const ManifestElement& element) {
    QList<const ManifestAttribute*> sorted;
    for (const ManifestAttribute& each : element.attributes) sorted << &each;
    std::stable_sort(sorted.begin(), sorted.end(), [](const auto* a, const auto* b) {
      return a->number - 1 < b->number - 1;  // those without a number last
    });
    QByteArray content = numbers<quint32>({kNone, text(element.name)}) +
                         numbers<quint16>({20, 20, static_cast<quint16>(sorted.size()), 0, 0, 0});
    for (const ManifestAttribute* each : sorted) content += attribute(*each);
    QByteArray nodes = node(kElementBegins, content);
    for (const ManifestElement& child : element.children) nodes += this->element(child);
    return nodes + node(kElementEnds, numbers<quint32>({kNone, text(element.name)}));
  }

  QByteArray attribute(const ManifestAttribute& attribute) {
    const bool isOfPlatform = attribute.number != 0;
    const auto name =
        isOfPlatform
            ? static_cast<quint32>(std::distance(m_numbers.begin(), m_numbers.find(attribute.number)))
            : text(attribute.name);
    quint32 raw = kNone;
    quint8 kind = kStringValue;
    quint32 value = 0;
    if (const auto* string = std::get_if<QString>(&attribute.value)) {
      raw = value = text(*string);
    } else if (const auto* integer = std::get_if<qint32>(&attribute.value)) {
      kind = kIntegerValue;
      value = static_cast<quint32>(*integer);
    } else if (const auto* truth = std::get_if<bool>(&attribute.value)) {
      kind = kBooleanValue;
      value = *truth ? kNone : 0;
    } else {
      kind = kReferenceValue;
      value = std::get<ResourceId>(attribute.value).number;
    }
    return numbers<quint32>({isOfPlatform ? text(kSpace) : kNone, name, raw}) + numbers<quint16>({8}) +
           numbers<quint8>({0, kind}) + numbers<quint32>({value});
  }

  QMap<quint32, QString> m_numbers;
  QStringList m_strings;
};

QByteArray configuration(const ResourceVersion& version) {
  QByteArray bytes(64, '\0');
  bytes[0] = 64;
  const QByteArray locale = version.locale.toLatin1();
  bytes.replace(8, 2, locale.left(2).leftJustified(2, '\0'));
  bytes.replace(10, 2, locale.mid(4, 2).leftJustified(2, '\0'));
  bytes.replace(14, 2, numbers<quint16>({static_cast<quint16>(version.density)}));
  return bytes;
}

/// A type with one entry in it: what may differ, and its versions.
QByteArray typeChunks(quint8 id, const Resource& resource, const QStringList& strings) {
  constexpr quint32 anything = 0xffff;
  QByteArray chunks =
      chunk(kTypeSpec, numbers<quint8>({id, 0, 0, 0}) + numbers<quint32>({1}), numbers<quint32>({anything}));
  for (const ResourceVersion& version : resource.versions) {
    const QByteArray header =
        numbers<quint8>({id, 0, 0, 0}) + numbers<quint32>({1, 84 + 4}) + configuration(version);
    const QByteArray entry = numbers<quint16>({8, 0}) + numbers<quint32>({quint32{id} - 1}) +
                             numbers<quint16>({8}) + numbers<quint8>({0, kStringValue}) +
                             numbers<quint32>({static_cast<quint32>(strings.indexOf(version.text))});
    chunks += chunk(kType, header, numbers<quint32>({0}) + entry);
  }
  return chunks;
}

}  // namespace

QByteArray binaryManifest(const ManifestElement& root) {
  return ManifestWriter().write(root);
}

QByteArray resourceTable(const QString& package, const QList<Resource>& resources) {
  QStringList strings;
  QStringList types;
  QStringList names;
  for (const Resource& resource : resources) {
    types << resource.type;
    names << resource.name;
    for (const ResourceVersion& version : resource.versions) strings << version.text;
  }
  strings.removeDuplicates();
  QByteArray chunks;
  for (qsizetype i = 0; i < resources.size(); ++i)
    chunks += typeChunks(static_cast<quint8>(i + 1), resources[i], strings);
  QByteArray name;
  for (const QChar letter : package.left(127)) name += numbers<quint16>({letter.unicode()});
  const QByteArray typeNames = stringPool(types);
  const QByteArray header =
      numbers<quint32>({0x7f}) + name.leftJustified(256, '\0') +
      numbers<quint32>({288, countOf(types), 288 + sizeOf(typeNames), countOf(names), 0});
  return chunk(kTable, numbers<quint32>({1}),
               stringPool(strings) + chunk(kPackage, header, typeNames + stringPool(names) + chunks));
}

}  // namespace orvanta
