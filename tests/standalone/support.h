#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <kx_standalone/host.h>
#include <kx_standalone/inventoryfile.h>

#include "support/files.h"
#include "support/services.h"

namespace NS_TEST {

/// Returns the text of the std::runtime_error that `action` throws. The test fails if it throws none.
template <class Action>
std::string ErrorOf(Action action) {
    try {
        action();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

/// Makes a file that holds `inventory`.
inline std::filesystem::path MakeInventory(const std::filesystem::path& file,
                                           const NS_STANDALONE::Inventory& inventory) {
    NS_STANDALONE::CreateInventory(file);
    NS_STANDALONE::ReplaceInventory(file, inventory);
    return file;
}

inline NS_STANDALONE::HostOptions WithInventory(const std::filesystem::path& file) {
    NS_STANDALONE::HostOptions options;
    options.inventoryFile = file;
    return options;
}

}  // namespace NS_TEST
