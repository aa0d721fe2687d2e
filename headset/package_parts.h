#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <variant>

namespace orvanta {

/// The parts of a package as they lie in it: the manifest and the table of resources, each in its binary
/// form.

/// A resource by its number.
struct ResourceId {
  quint32 number = 0;
};

/// An attribute of the manifest. `number` is the platform's for it; 0 is an attribute without a namespace.
struct ManifestAttribute {
  QString name;
  quint32 number = 0;
  std::variant<QString, qint32, bool, ResourceId> value;
};

struct ManifestElement {
  QString name;
  QList<ManifestAttribute> attributes = {};
  QList<ManifestElement> children = {};
};

QByteArray binaryManifest(const ManifestElement& root);

/// One version of a text resource (or of a file's path), for one configuration.
struct ResourceVersion {
  QString text;
  QString locale = {};  ///< as in the name of a folder, such as "zh-rCN"
  int density = 0;
};

/// The resources of one type that are all one name, in several versions.
struct Resource {
  QString type;
  QString name;
  QList<ResourceVersion> versions;
};

/// The table of these resources; each has a type of its own, and so the numbers 0x7f010000, 0x7f020000, ...
QByteArray resourceTable(const QString& package, const QList<Resource>& resources);

}  // namespace orvanta
