#include "Parallel.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace training {

void parallelFor(int count, int threads, const std::function<void(int, int)>& work) {
    std::atomic<int> next{0};
    std::mutex mutex;
    std::exception_ptr failure;
    int failedIndex = count;
    const auto run = [&](int worker) {
        for (int index = next++; index < count; index = next++) {
            try {
                work(index, worker);
            } catch (...) {
                const std::lock_guard<std::mutex> lock(mutex);
                if (index < failedIndex) failure = std::current_exception(), failedIndex = index;
                next = count;
            }
        }
    };
    std::vector<std::thread> others;
    for (int worker = 1; worker < threads; ++worker) others.emplace_back(run, worker);
    run(0);
    for (std::thread& thread : others) thread.join();
    if (failure) std::rethrow_exception(failure);
}

}  // namespace training
