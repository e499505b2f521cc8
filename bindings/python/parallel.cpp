#include "bindings/python/parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include <sched.h>

namespace NS_KX::NS_PYTHON {

namespace {

// Unlike std::thread::hardware_concurrency, only those that this process may run on.
std::size_t CountCores() {
    cpu_set_t cores;
    CPU_ZERO(&cores);
    return sched_getaffinity(0, sizeof cores, &cores) == 0 ? static_cast<std::size_t>(CPU_COUNT(&cores)) : 1;
}

}  // namespace

void RunInParallel(std::size_t count, const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next = 0;
    std::mutex mutex;
    std::exception_ptr failure;
    const auto run = [&] {
        try {
            for (std::size_t place = next++; place < count; place = next++) {
                work(place);
            }
        } catch (...) {
            next = count;
            const std::lock_guard lock(mutex);
            failure = std::current_exception();
        }
    };
    {
        std::vector<std::jthread> helpers;
        const std::size_t wanted = std::min(CountCores(), count);
        helpers.reserve(wanted);
        try {
            while (helpers.size() + 1 < wanted) {
                helpers.emplace_back(run);
            }
        } catch (const std::system_error&) {
            // No more threads: those that there are do all the work.
        }
        run();
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

}  // namespace NS_KX::NS_PYTHON
