/// Objects of the C interface that free themselves.
#pragma once

#include <memory>

#include <kx/kx.h>

namespace NS_TEST {

struct Free {
    void operator()(kx_record* record) const { kx_record_free(record); }
    void operator()(kx_plan* plan) const { kx_plan_free(plan); }
};
using Record = std::unique_ptr<kx_record, Free>;
using Plan = std::unique_ptr<kx_plan, Free>;

}  // namespace NS_TEST
