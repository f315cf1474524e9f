#include <fmt/format.h>
#include <openssl/evp.h>

#include "tools/voxa/Failure.h"
#include "tools/voxa/Sha256.h"

namespace voxa {

std::string sha256(const unsigned char* bytes, std::size_t count) {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned size = 0;
  if (EVP_Digest(bytes, count, digest, &size, EVP_sha256(), nullptr) != 1) {
    throw Failure(Status::Failed, "SHA-256 is not available");
  }
  std::string text;
  for (unsigned index = 0; index < size; ++index) text += fmt::format("{:02x}", digest[index]);
  return text;
}

}  // namespace voxa
