#include "icon.h"

#include <cstring>

#include "badging_walk.h"

namespace orvanta::badging {

namespace {

constexpr uint32_t kLargestPicture = 64 << 10;
constexpr uint32_t kLargestDrawing = 64 << 10;
constexpr uint16_t kLowDensity = 160;
// Before icons were put together from layers: an app that has plain pictures as well has them for this one.
constexpr uint16_t kPlainIcons = 25;
constexpr uint32_t kSource = 0x01010119;
constexpr uint32_t kDrawable = 0x01010199;

std::string base64(Bytes bytes) {
  constexpr char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve(bytes.size() / 3 * 4 + 5);
  for (size_t at = 0; at < bytes.size(); at += 3) {
    const uint32_t three =
        uint32_t{bytes.u8(at)} << 16 | uint32_t{bytes.u8(at + 1)} << 8 | uint32_t{bytes.u8(at + 2)};
    for (int shift = 18; shift >= 0; shift -= 6) text += kLetters[three >> shift & 63];
  }
  for (size_t missing = (3 - bytes.size() % 3) % 3; missing > 0; --missing) text[text.size() - missing] = '=';
  return text;
}

bool printPicture(const ZipArchive& archive, const std::string& path, Output& output) {
  constexpr uint8_t kSignature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
  Blob blob;
  if (path.empty() || archive.file(path, kLargestPicture, blob) != ZipArchive::Result::Ready) return false;
  const Bytes bytes = blob.bytes();
  if (bytes.size() < sizeof(kSignature) || memcmp(bytes.data(), kSignature, sizeof(kSignature)) != 0)
    return false;
  output << base64(bytes) << "\n";
  return true;
}

/// The first picture in a drawing, such as the foreground of an icon that is put together.
bool printPictureIn(const ZipArchive& archive, const std::string& path, ResourceTable& table,
                    const Request& request, Work& work, Output& output) {
  Blob blob;
  Manifest drawing(table, work);
  if (!path.ends_with(".xml") || archive.file(path, kLargestDrawing, blob) != ZipArchive::Result::Ready ||
      !drawing.load(blob.bytes()))
    return false;
  Manifest::Event event = drawing.next();
  for (; event != Manifest::Event::Done; event = drawing.next()) {
    if (event != Manifest::Event::Start) continue;
    const std::string element = drawing.element().value_or(std::string());
    if (element == "background" || element == "monochrome") {
      drawing.skipElement();
      continue;
    }
    for (const uint32_t attribute : {kDrawable, kSource}) {
      std::string_view ignored;
      if (printPicture(archive, drawing.resolved(attribute, request, ignored), output)) return true;
    }
  }
  return false;
}

}  // namespace

void printIcon(const ZipArchive& archive, ResourceTable& table, Manifest& manifest, Work& work,
               Output& output) {
  Manifest::Event event = manifest.next();
  while (event != Manifest::Event::Done &&
         (event != Manifest::Event::Start || manifest.element() != "application"))
    event = manifest.next();
  if (event == Manifest::Event::Done) return;
  Request request;
  request.density = kLowDensity;
  for (const uint16_t sdkVersion : {kPlainIcons, Request().sdkVersion}) {
    request.sdkVersion = sdkVersion;
    std::string_view ignored;
    const std::string path = manifest.resolved(kIcon, request, ignored);
    if (printPicture(archive, path, output) || printPictureIn(archive, path, table, request, work, output))
      return;
  }
}

}  // namespace orvanta::badging
