// Feeds random text to one reader; its name is in ORVANTA_READER. fuzz/run runs all of them.

#include <QDir>
#include <QFile>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "readers.h"

namespace {

const orvanta::fuzz::Reader& chosen() {
  const char* name = std::getenv("ORVANTA_READER");
  const auto& all = orvanta::fuzz::readers();
  const auto reader = std::find_if(all.begin(), all.end(), [name](const orvanta::fuzz::Reader& one) {
    return name != nullptr && std::string_view(one.name) == name;
  });
  if (reader != all.end()) return *reader;
  for (const orvanta::fuzz::Reader& one : all) std::puts(one.name);
  std::exit(2);
}

}  // namespace

/// With ORVANTA_SEEDS the seeds of all readers are written there, each into a folder of its reader's name.
extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  const QString folder = qEnvironmentVariable("ORVANTA_SEEDS");
  if (folder.isEmpty()) return 0;
  for (const orvanta::fuzz::Reader& reader : orvanta::fuzz::readers()) {
    const QDir place(folder + QStringLiteral("/") + QString::fromLatin1(reader.name));
    QFile file(place.filePath(QStringLiteral("seed")));
    if (!place.mkpath(QStringLiteral(".")) || !file.open(QIODevice::WriteOnly) ||
        file.write(reader.seed) != reader.seed.size())
      std::exit(1);
    std::puts(reader.name);
  }
  std::exit(0);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const orvanta::fuzz::Reader& reader = chosen();
  // A copy of the exact size, so that a read past its end is caught.
  reader.read(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
  return 0;
}
