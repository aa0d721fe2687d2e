#pragma once

#include <QString>

#include "text/bilingual.h"

/// The notes in the journal about copies that are under way.
namespace orvanta {

/// Their "kind".
extern const QString copyNoteKind;
/// The path for a note, independent of the next start's folder.
QString notedPath(const QString& path);
/// Whether another process is copying to `path`, or left something there that could not be set right.
bool isUnderway(const QString& path);
/// What the user is told about such a copy.
extern const Bilingual copyUnderway;

}  // namespace orvanta
