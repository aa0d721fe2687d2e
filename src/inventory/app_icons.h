#pragma once

#include <QCoroTask>
#include <QHash>
#include <QObject>

#include "core/dosoutputs.h"
#include "core/turn.h"
#include "inventory/icon_cache.h"

namespace orvanta {

class Form4;
class Workbench;

/// Brings the icons into the list. Those that are known are there at once; the others come in one call, which
/// nobody waits for: it makes way when a handler takes the turn, and goes on when that has ended.
class AppIcons : public QObject {
  Q_OBJECT

 public:
  AppIcons(Workbench& bench, Form4& window);

  /// The list was filled anew. `canAsk`: the reader of packages lies on the headset.
  void show(bool canAsk);

 private:
  QCoro::Task<> ask();
  void take(const QString& text);

  Workbench& m_bench;
  Form4& m_window;
  IconCache m_cache;
  Turn m_quiet;
  DOSOutputs m_quietDOS;
  QString m_line;                    // begun, but not yet ended
  QHash<QString, QString> m_wanted;  // builds by package
};

}  // namespace orvanta
