#pragma once

#include <optional>
#include <string_view>

#include "byte_source.h"
#include "output.h"
#include "work.h"

namespace orvanta::badging {

/// Prints what `aapt dump badging` prints of a package about its name, versions, permissions, features,
/// labels and icons; lines that no reader of ours uses are left out. `option` is the kind of dump that was
/// asked for, of which there is this one only. Returns the exit code: 0, or 1 when something was wrong with
/// the package; what it was stands in `errors`, in the words of the original.
int dump(std::string_view option, const ByteSource& package, Output& output, Output& errors,
         Work work = Work());

/// The same of parts that are unpacked already: the resource table, empty when there is none, and the
/// manifest.
int dumpParts(std::string_view option, Bytes table, std::optional<Bytes> manifest, Output& output,
              Output& errors, Work work = Work());

}  // namespace orvanta::badging
