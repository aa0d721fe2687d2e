#pragma once

#include <QByteArray>
#include <memory>

namespace orvanta {

/// A SHA-256 by the system's own library, which uses what the processor has for it: of a backup of many
/// gigabytes the hash would else take longer than the transfer.
class Sha256 {
 public:
  Sha256();
  ~Sha256();
  Sha256(Sha256&&) noexcept;
  Sha256& operator=(Sha256&&) noexcept;

  void add(QByteArrayView bytes);
  /// In hexadecimal; ends the hash. Empty where the library has failed.
  QByteArray hex();

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

}  // namespace orvanta
