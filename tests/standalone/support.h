#pragma once

#include <filesystem>
#include <mutex>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <kx_platform/bundlemgr.h>
#include <kx_standalone/host.h>
#include <kx_standalone/inventoryfile.h>

#include "support/files.h"

namespace NS_TEST {

/// The text of the std::runtime_error that `action` throws; a failure when it throws none.
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

/// The service registered under `name`; null when there is none.
template <class Service>
Service* FindService(const std::string& name) {
    const std::lock_guard lock(NS_BUNDLEMGR1::_g_actualmutex);
    for (const auto& object : NS_BUNDLEMGR1::BundleMgr::Instance()->GetServiceObjects()) {
        if (object.GetObjectName() == name) {
            return dynamic_cast<Service*>(object.GetInterface());
        }
    }
    return nullptr;
}

/// A file that holds `inventory`.
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
