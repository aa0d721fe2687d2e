#include "badging.h"

#include "badging_walk.h"
#include "icon.h"
#include "manifest.h"
#include "resource_table.h"
#include "zip_archive.h"

namespace orvanta::badging {

namespace {

constexpr std::string_view kTableCorrupt =
    "ERROR: dump failed because the resource table is invalid/corrupt.\n";
constexpr std::string_view kNoManifest = "ERROR: dump failed because no AndroidManifest.xml found\n";

}  // namespace

int dump(std::string_view option, const ByteSource& package, Output& output, Output& errors, Work work) {
  ZipArchive archive(package);
  if (!archive.open()) {
    errors << kNoManifest;
    return 1;
  }
  Blob table;
  if (archive.resourceTable(table) == ZipArchive::Result::Unreadable) {
    errors << kTableCorrupt;
    return 1;
  }
  Blob manifest;
  const ZipArchive::Result result = archive.manifest(manifest);
  std::optional<Bytes> content;
  if (result == ZipArchive::Result::Ready) content = manifest.bytes();
  if (result == ZipArchive::Result::Unreadable) content = Bytes();
  if (option == "icon" && content) {
    ResourceTable resources(work);
    Manifest root(resources, work);
    const bool sound = (table.bytes().size() == 0 || resources.load(table.bytes())) && root.load(*content);
    if (sound) printIcon(archive, resources, root, work, output);
    return sound ? 0 : 1;
  }
  return dumpParts(option, table.bytes(), content, output, errors, work);
}

int dumpParts(std::string_view option, Bytes tableContent, std::optional<Bytes> manifestContent,
              Output& output, Output& errors, Work work) {
  ResourceTable table(work);
  // A package without resources, such as a split with code only, is fine.
  if (tableContent.size() > 0 && !table.load(tableContent)) {
    errors << kTableCorrupt;
    return 1;
  }
  if (!manifestContent) {
    errors << kNoManifest;
    return 1;
  }
  Manifest manifest(table, work);
  if (!manifest.load(*manifestContent)) {
    errors << "ERROR: AndroidManifest.xml is corrupt\n";
    return 1;
  }
  if (option != "badging") {
    errors << "ERROR: unknown dump option '" << option << "'\n";
    return 1;
  }
  const bool complete = Walk(table, manifest, output, errors).run();
  if (complete && work.isSpent()) errors << kTableCorrupt;
  return complete && !work.isSpent() ? 0 : 1;
}

}  // namespace orvanta::badging
