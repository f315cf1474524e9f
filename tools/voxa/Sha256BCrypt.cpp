#include <fmt/format.h>
#include <windows.h>
// after windows.h
#include <bcrypt.h>

#include "tools/voxa/Failure.h"
#include "tools/voxa/Sha256.h"

namespace voxa {

namespace {

void require(NTSTATUS status) {
  if (status < 0) throw Failure(Status::Failed, "SHA-256 is not available");
}

}  // namespace

struct Sha256::State {
  State() = default;
  ~State() {
    if (hash != nullptr) BCryptDestroyHash(hash);
    if (algorithm != nullptr) BCryptCloseAlgorithmProvider(algorithm, 0);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  BCRYPT_ALG_HANDLE algorithm = nullptr;
  BCRYPT_HASH_HANDLE hash = nullptr;
};

Sha256::Sha256() : m_state(std::make_unique<State>()) {
  require(BCryptOpenAlgorithmProvider(&m_state->algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0));
  require(BCryptCreateHash(m_state->algorithm, &m_state->hash, nullptr, 0, nullptr, 0, 0));
}

Sha256::~Sha256() = default;

void Sha256::add(std::string_view bytes) {
  constexpr std::size_t kMaxPiece = 1U << 30U;  // sizes of the library have 32 bits
  while (!bytes.empty()) {
    const std::string_view piece = bytes.substr(0, kMaxPiece);
    // The library does not write to the bytes.
    auto* const data = reinterpret_cast<PUCHAR>(const_cast<char*>(piece.data()));
    require(BCryptHashData(m_state->hash, data, static_cast<ULONG>(piece.size()), 0));
    bytes.remove_prefix(piece.size());
  }
}

std::string Sha256::finish() {
  unsigned char digest[32];
  require(BCryptFinishHash(m_state->hash, digest, sizeof digest, 0));
  std::string text;
  for (const unsigned char byte : digest) text += fmt::format("{:02x}", byte);
  return text;
}

}  // namespace voxa
