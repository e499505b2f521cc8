/// What stands around the library while it is measured: the same real services and configuration as in a process of an
/// operator.
#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>

#include <kx_platform/bundlemgr.h>
#include <kx_standalone/host.h>

#include "corpus.h"

namespace NS_BENCH {

/// Inventory, configuration items and domain lists are there for as long as it lives, for the library and for its
/// literal counterpart.
class Surroundings {
public:
    explicit Surroundings(const Corpus& corpus);
    ~Surroundings();
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

private:
    std::filesystem::path m_folder;
    std::unique_ptr<NS_STANDALONE::Host> m_host;
};

/// The service of this name, searched for under the lock. Throws when there is none.
template <class Interface>
Interface& FindService(std::string_view name) {
    const std::lock_guard lock(NS_BUNDLEMGR1::_g_actualmutex);
    for (const auto& object : NS_BUNDLEMGR1::BundleMgr::Instance()->GetServiceObjects()) {
        if (object.GetObjectName() == name) {
            return dynamic_cast<Interface&>(*object.GetInterface());
        }
    }
    throw std::logic_error("the host serves no " + std::string(name));
}

}  // namespace NS_BENCH
