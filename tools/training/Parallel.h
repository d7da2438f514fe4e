#pragma once

#include <functional>

namespace training {

/// Calls `work(index, worker)` once for every index below `count`, on `threads` threads; `worker`
/// names the thread, 0 to `threads - 1`, so that each can have scratch memory of its own. The
/// first exception, by index, is thrown again after all threads have ended.
void parallelFor(int count, int threads, const std::function<void(int index, int worker)>& work);

}  // namespace training
