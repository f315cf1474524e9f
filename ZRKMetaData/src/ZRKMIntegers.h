// The integer types of the container format, by the names that the parser's interfaces use.
#pragma once

#include <cstdint>

namespace ZRKMetaData {

using int32 = std::int32_t;
using uint32 = std::uint32_t;
using int64 = long long;  // one type on every platform, where std::int64_t is not
using uint64 = unsigned long long;

}  // namespace ZRKMetaData
