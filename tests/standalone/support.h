#pragma once

#include <filesystem>
#include <fstream>
#include <mutex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <stdlib.h>

#include <kx_platform/bundlemgr.h>
#include <kx_standalone/host.h>
#include <kx_standalone/inventoryfile.h>

namespace NS_TEST {

/// An empty folder that is deleted with all that was put into it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "kx_standalone_XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        m_path = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }
    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

inline void WriteFile(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

inline std::string ReadFile(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

/// The text of the std::runtime_error that action throws; a failure when it throws none.
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

/// The service registered under name; null when there is none.
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

/// A file that holds inventory.
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
