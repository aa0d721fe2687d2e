#include "platform/sha256.h"

#include <openssl/evp.h>

namespace orvanta {

struct Sha256::State {
  std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context{EVP_MD_CTX_new(), EVP_MD_CTX_free};
  bool works = context != nullptr && EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) == 1;
};

Sha256::Sha256() : m_state(std::make_unique<State>()) {}
Sha256::~Sha256() = default;
Sha256::Sha256(Sha256&&) noexcept = default;
Sha256& Sha256::operator=(Sha256&&) noexcept = default;

void Sha256::add(QByteArrayView bytes) {
  m_state->works = m_state->works && EVP_DigestUpdate(m_state->context.get(), bytes.data(),
                                                      static_cast<size_t>(bytes.size())) == 1;
}

QByteArray Sha256::hex() {
  QByteArray hash(EVP_MAX_MD_SIZE, Qt::Uninitialized);
  unsigned int length = 0;
  if (!m_state->works ||
      EVP_DigestFinal_ex(m_state->context.get(), reinterpret_cast<unsigned char*>(hash.data()), &length) != 1)
    return {};
  hash.truncate(static_cast<qsizetype>(length));
  return hash.toHex();
}

}  // namespace orvanta
