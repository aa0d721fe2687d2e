#include "platform/sha256.h"

#include <windows.h>
// After it.
#include <bcrypt.h>

namespace orvanta {

namespace {

constexpr ULONG hashBytes = 32;

}  // namespace

struct Sha256::State {
  State() {
    works = BCRYPT_SUCCESS(BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0)) &&
            BCRYPT_SUCCESS(BCryptCreateHash(algorithm, &hash, nullptr, 0, nullptr, 0, 0));
  }
  ~State() {
    if (hash != nullptr) BCryptDestroyHash(hash);
    if (algorithm != nullptr) BCryptCloseAlgorithmProvider(algorithm, 0);
  }
  Q_DISABLE_COPY_MOVE(State)

  BCRYPT_ALG_HANDLE algorithm = nullptr;
  BCRYPT_HASH_HANDLE hash = nullptr;
  bool works = false;
};

Sha256::Sha256() : m_state(std::make_unique<State>()) {}
Sha256::~Sha256() = default;
Sha256::Sha256(Sha256&&) noexcept = default;
Sha256& Sha256::operator=(Sha256&&) noexcept = default;

void Sha256::add(QByteArrayView bytes) {
  auto* const first = reinterpret_cast<PUCHAR>(const_cast<char*>(bytes.data()));
  m_state->works = m_state->works &&
                   BCRYPT_SUCCESS(BCryptHashData(m_state->hash, first, static_cast<ULONG>(bytes.size()), 0));
}

QByteArray Sha256::hex() {
  QByteArray hash(hashBytes, Qt::Uninitialized);
  if (!m_state->works ||
      !BCRYPT_SUCCESS(BCryptFinishHash(m_state->hash, reinterpret_cast<PUCHAR>(hash.data()), hashBytes, 0)))
    return {};
  return hash.toHex();
}

}  // namespace orvanta
