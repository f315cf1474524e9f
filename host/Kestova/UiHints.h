// Hints for showing a parameter in a user interface. The host defines the numbers.
// A plain value.
#pragma once

namespace Kestova {

struct UiHints {
  int userInterfaceType = 0;
  int unitType = 0;
};

}  // namespace Kestova
