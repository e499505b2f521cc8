/// The surroundings of the library while it is measured: real services and a configuration, as in an operator's
/// process.
#pragma once

#include <filesystem>
#include <memory>

#include <kx_standalone/host.h>

#include "corpus.h"

namespace NS_BENCH {

/// As long as it lives, the library and its literal counterpart have an inventory, configuration items and domain
/// lists.
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
