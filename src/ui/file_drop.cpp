#include "ui/file_drop.h"

#include <QAbstractScrollArea>
#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QWidget>
#include <utility>

namespace orvanta {

namespace {

QStringList localPaths(const QMimeData* data) {
  QStringList paths;
  for (const QUrl& url : data->urls())
    if (url.isLocalFile()) paths << url.toLocalFile();
  return paths;
}

}  // namespace

FileDrop::FileDrop(QWidget* window, std::function<void(QStringList)> taken)
    : QObject(window), m_taken(std::move(taken)) {
  window->setAcceptDrops(true);
  for (auto* area : window->findChildren<QAbstractScrollArea*>()) {
    area->setAcceptDrops(false);
    area->viewport()->setAcceptDrops(false);
  }
  window->installEventFilter(this);
}

bool FileDrop::eventFilter(QObject* watched, QEvent* event) {
  const bool isDrop = event->type() == QEvent::Drop;
  if (!isDrop && event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove)
    return QObject::eventFilter(watched, event);
  auto* drop = static_cast<QDropEvent*>(event);
  const QStringList paths = localPaths(drop->mimeData());
  if (paths.isEmpty()) return QObject::eventFilter(watched, event);
  // The source keeps its files, whatever it offers.
  drop->setDropAction(Qt::CopyAction);
  drop->accept();
  // The source waits for the end of the drop.
  if (isDrop) QTimer::singleShot(0, this, [this, paths] { m_taken(paths); });
  return true;
}

}  // namespace orvanta
