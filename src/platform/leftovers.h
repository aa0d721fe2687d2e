#pragma once

#include <QStringList>

#include "platform/journal.h"

namespace orvanta {

/// Notes files that this process is about to make, and their folder if it makes one.
JournalEntry noteLeftovers(const QStringList& files, const QString& folder = {});
/// Notes a file that exists already, under a name that another program may use later.
JournalEntry noteLeftover(const QString& file);

/// The "kind" of such a note.
extern const QString leftoversKind;
/// Removes what a dead process left: the files, and the folder if that is then empty. Returns whether there
/// was anything.
bool removeLeftovers(const QJsonObject& note);

}  // namespace orvanta
