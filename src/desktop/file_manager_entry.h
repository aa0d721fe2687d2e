#pragma once

#include <QCoroTask>
#include <memory>

namespace orvanta {

/// The entry by which the file manager offers this program on a package. It is made by three writes; a failed
/// one leaves what those before it wrote.
class FileManagerEntry {
 public:
  virtual ~FileManagerEntry() = default;

  /// That of this desktop, for the program at its present place.
  static std::unique_ptr<FileManagerEntry> create();

  /// First: what the entry starts. Returns whether it stands.
  virtual bool writeCommand() = 0;
  /// Second: that it is offered for packages only.
  virtual QCoro::Task<> writeAppliesTo() = 0;
  /// Third: its picture. Returns whether it stands.
  virtual bool writeIcon() = 0;
};

}  // namespace orvanta
