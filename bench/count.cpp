#include "measurement.h"
#include "support/allocations.h"

namespace NS_BENCH {

std::optional<std::size_t> CountAllocations(const std::function<void()>& operation) {
    const NS_TEST::AllocationCount count;
    operation();
    return count.Get();
}

}  // namespace NS_BENCH
