#include "app/set_right.h"

#include <QFileInfo>

#include "backups/app_backup.h"
#include "backups/copy_note.h"
#include "core/borrowed_name.h"
#include "core/paths.h"
#include "operations/local_copy.h"
#include "platform/leftovers.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QStringList settleWhatIsLeft(QString& commandText) {
  const QString opened = absolutePath(commandText);
  QStringList lines = settleJournal([&](const QJsonObject& note) -> Settled {
    const QString kind = note[u"kind"].toString();
    if (kind == BorrowedName::kind) {
      const Settled settled = BorrowedName::settle(note);
      if (opened == BorrowedName::otherPath(note) && !QFileInfo::exists(opened))
        commandText = BorrowedName::ownPath(note);
      return settled;
    }
    if (kind == copyNoteKind) return LocalCopy::settle(note);
    if (kind == BackupRun::noteKind) return BackupRun::settle(note);
    if (kind != leftoversKind) return {false};  // from a later version
    if (!removeLeftovers(note)) return {};
    return {true, inFace(u"上次运行中断，已删除留下的临时文件"_s,
                         u"An earlier run was cut short; its temporary files are removed"_s)};
  });
  lines.removeDuplicates();
  return lines;
}

}  // namespace orvanta
