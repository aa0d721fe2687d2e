#pragma once

#include <QCoroTask>
#include <memory>

namespace orvanta {

/// The entry by which the file manager offers this program for a package. It takes three writes; if one
/// fails, what the earlier ones wrote stays.
class FileManagerEntry {
 public:
  virtual ~FileManagerEntry() = default;

  /// The entry of this desktop, for the program where it is now.
  static std::unique_ptr<FileManagerEntry> create();

  /// First: what the entry starts. Returns whether it was written.
  virtual bool writeCommand() = 0;
  /// Second: that it is offered for packages only.
  virtual QCoro::Task<> writeAppliesTo() = 0;
  /// Third: its icon. Returns whether it was written.
  virtual bool writeIcon() = 0;
};

}  // namespace orvanta
