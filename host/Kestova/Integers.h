// The host's integer types. They are the same on every platform.
#pragma once

namespace Kestova {

using int64 = long long;
using uint64 = unsigned long long;
__extension__ using int128 = __int128;

}  // namespace Kestova
