#pragma once

#include <cstddef>
#include <functional>

namespace NS_KX::NS_PYTHON {

/// Calls `work(0)` to `work(count - 1)`, each once, on all cores that this process may use; returns after the last call
/// has returned. Rethrows what one of them throws; some are not called then.
void RunInParallel(std::size_t count, const std::function<void(std::size_t)>& work);

}  // namespace NS_KX::NS_PYTHON
