// How a user interface should show a parameter. The numbers are the host's own enumerations.
#pragma once

namespace Kestova {

struct UiHints {
  int userInterfaceType = 0;
  int unitType = 0;
};

}  // namespace Kestova
