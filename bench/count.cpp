#include "measurement.h"
#include "support/allocations.h"

namespace NS_BENCH {

double CountAllocations(const std::function<void()>& operation) {
    const NS_TEST::AllocationCount count;
    operation();
    return static_cast<double>(count.Get());
}

}  // namespace NS_BENCH
