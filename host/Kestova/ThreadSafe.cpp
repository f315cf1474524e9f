#include "host/Kestova/ThreadSafe.h"

namespace Kestova {

ThreadSafe::ThreadSafe() = default;
ThreadSafe::~ThreadSafe() = default;

}  // namespace Kestova
