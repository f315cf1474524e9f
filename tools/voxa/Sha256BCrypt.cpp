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

class Algorithm {
 public:
  Algorithm() {
    require(BCryptOpenAlgorithmProvider(&m_handle, BCRYPT_SHA256_ALGORITHM, nullptr, 0));
  }
  ~Algorithm() { BCryptCloseAlgorithmProvider(m_handle, 0); }
  Algorithm(const Algorithm&) = delete;
  Algorithm& operator=(const Algorithm&) = delete;

  BCRYPT_ALG_HANDLE handle() const { return m_handle; }

 private:
  BCRYPT_ALG_HANDLE m_handle = nullptr;
};

class Digest {
 public:
  explicit Digest(const Algorithm& algorithm) {
    require(BCryptCreateHash(algorithm.handle(), &m_handle, nullptr, 0, nullptr, 0, 0));
  }
  ~Digest() { BCryptDestroyHash(m_handle); }
  Digest(const Digest&) = delete;
  Digest& operator=(const Digest&) = delete;

  std::string of(const unsigned char* bytes, std::size_t count) const {
    require(
        BCryptHashData(m_handle, const_cast<unsigned char*>(bytes), static_cast<ULONG>(count), 0));
    unsigned char digest[32];
    require(BCryptFinishHash(m_handle, digest, sizeof digest, 0));
    std::string text;
    for (const unsigned char byte : digest) text += fmt::format("{:02x}", byte);
    return text;
  }

 private:
  BCRYPT_HASH_HANDLE m_handle = nullptr;
};

}  // namespace

std::string sha256(const unsigned char* bytes, std::size_t count) {
  const Algorithm algorithm;  // the image's size has 32 bits, and so has the library's
  return Digest(algorithm).of(bytes, count);
}

}  // namespace voxa
