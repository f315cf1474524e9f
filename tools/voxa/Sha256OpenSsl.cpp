#include <fmt/format.h>
#include <openssl/evp.h>

#include "tools/voxa/Failure.h"
#include "tools/voxa/Sha256.h"

namespace voxa {

namespace {

void require(int result) {
  if (result != 1) throw Failure(Status::Failed, "SHA-256 is not available");
}

struct FreeContext {
  void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

}  // namespace

struct Sha256::State {
  const std::unique_ptr<EVP_MD_CTX, FreeContext> context{EVP_MD_CTX_new()};
};

Sha256::Sha256() : m_state(std::make_unique<State>()) {
  require(m_state->context ? 1 : 0);
  require(EVP_DigestInit_ex(m_state->context.get(), EVP_sha256(), nullptr));
}

Sha256::~Sha256() = default;

void Sha256::add(std::string_view bytes) {
  require(EVP_DigestUpdate(m_state->context.get(), bytes.data(), bytes.size()));
}

std::string Sha256::finish() {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned size = 0;
  require(EVP_DigestFinal_ex(m_state->context.get(), digest, &size));
  std::string text;
  for (unsigned index = 0; index < size; ++index) text += fmt::format("{:02x}", digest[index]);
  return text;
}

}  // namespace voxa
