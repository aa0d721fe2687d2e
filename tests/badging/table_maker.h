#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace orvanta::test {

/// How a resource table writes down where its entries are, and the entries themselves. aapt writes the first
/// only.
enum class TableForm { Plain, Sparse, Offset16, Compact };

/// One version of the label and of the icon (a path), for one configuration. An empty text is an absent
/// entry.
struct TableVersion {
  QByteArray language = {};  ///< two or three letters
  QByteArray region = {};
  QByteArray script = {};
  int density = 0;
  QString label = {};
  QString icon = {};
};

/// The ids under which makeTable() puts things; `kHopId` + n is the n-th of a chain of references to the
/// label.
constexpr quint32 kLabelId = 0x7f020000;
constexpr quint32 kIconId = 0x7f020001;
constexpr quint32 kHopId = 0x7f020003;

/// A resource table with the given versions and `hops` references in the default configuration.
QByteArray makeTable(const QList<TableVersion>& versions, TableForm form = TableForm::Plain, int hops = 0);

}  // namespace orvanta::test
