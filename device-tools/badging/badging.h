#pragma once

#include <optional>
#include <string_view>

#include "byte_source.h"
#include "output.h"
#include "work.h"

namespace orvanta::badging {

/// Prints what `aapt dump badging` prints about a package's name, versions, permissions, features, labels and
/// icons, without the lines that Orvanta does not read. `option` is the kind of dump: "badging", or "icon"
/// for what printIcon() prints. Returns the exit code: 0, or 1 when something is wrong with the package, with
/// aapt's words in `errors`.
int dump(std::string_view option, const ByteSource& package, Output& output, Output& errors,
         Work work = Work());

/// The same for unpacked parts: the resource table, empty when there is none, and the manifest.
int dumpParts(std::string_view option, Bytes table, std::optional<Bytes> manifest, Output& output,
              Output& errors, Work work = Work());

}  // namespace orvanta::badging
