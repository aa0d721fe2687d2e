#pragma once

#include "manifest.h"
#include "output.h"
#include "resource_table.h"
#include "work.h"
#include "zip_archive.h"

namespace orvanta::badging {

/// Prints the app's icon, a PNG of at most 64 KiB, in base64 on one line: the one for a low density, which
/// has 48 pixels where there are several, else one that an icon in XML is drawn with. Prints nothing where
/// there is no such picture. `manifest` is at its beginning.
void printIcon(const ZipArchive& archive, ResourceTable& table, Manifest& manifest, Work& work,
               Output& output);

}  // namespace orvanta::badging
