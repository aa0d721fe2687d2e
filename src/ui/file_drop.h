#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

class QWidget;

namespace orvanta {

/// Takes files and folders that are dropped on a window. Controls that would take them as text get no drops.
class FileDrop : public QObject {
  Q_OBJECT

 public:
  FileDrop(QWidget* window, std::function<void(QStringList)> taken);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::function<void(QStringList)> m_taken;
};

}  // namespace orvanta
