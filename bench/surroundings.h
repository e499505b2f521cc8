/// What stands around the library while it is measured: the same real services and configuration as in a process of an
/// operator.
#pragma once

#include <filesystem>
#include <memory>

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

}  // namespace NS_BENCH
