#include "tools/voxa/Failure.h"

#include <algorithm>
#include <array>

namespace voxa {

Status worse(Status left, Status right) {
  // The worst first.
  static constexpr std::array kOrder = {
      Status::WrongUse,    Status::CannotOpen,   Status::NoSuchStream,
      Status::DamagedData, Status::Failed,       Status::Lost,
      Status::Different,   Status::SecretsFound, Status::Done};
  return *std::find_if(kOrder.begin(), kOrder.end(),
                       [=](Status status) { return status == left || status == right; });
}

}  // namespace voxa
