#include "configurationservice.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <kx_platform/configitems.h>

#include "forks.h"

namespace NS_STANDALONE {

namespace fs = std::filesystem;

using NS_BUNDLEMGR1::CorbaConfigItems;
using NS_BUNDLEMGR1::ReadPin;
using NS_SERVICE::ConfigObject;

namespace {

const std::string BUNDLE_FILE = "kx_corbaagent_bundle/bundle.cfg";

bool StaysInside(const fs::path& path) {
    return path.is_relative() && std::ranges::find(path, fs::path("..")) == path.end();
}

}  // namespace

ConfigurationService::Section::Section() : m_items(std::make_unique<TomlFile::IntItems>()) {}

bool ConfigurationService::Section::GetIntItemInfo(const std::string& key, int& value) {
    ReadPin pin;
    const TomlFile::IntItems& items = m_items.Read(pin);
    const auto found = items.find(key);
    if (found == items.end()) {
        return false;
    }
    value = found->second;
    return true;
}

void ConfigurationService::Section::Replace(TomlFile::IntItems items) {
    m_items.Replace(std::make_unique<TomlFile::IntItems>(std::move(items)));
}

ConfigurationService::ConfigurationService(fs::path folder, PublishedFiles files)
    : m_folder(std::move(folder)), m_published(std::make_unique<PublishedFiles>(std::move(files))) {}

// Delegates, so that the destructor runs and removes the items again if not all of them can be set.
ConfigurationService::ConfigurationService(fs::path folder) : ConfigurationService(std::move(folder), {}) {
    const TomlFile& bundleFile = m_files.emplace(BUNDLE_FILE, ReadBundleFile()).first->second;
    Publish();
    SetItems(bundleFile.items);
}

ConfigurationService::~ConfigurationService() {
    SetItems({});
}

void ConfigurationService::Reload() {
    const std::lock_guard lock(ConfigurationMutex());
    Files files;
    for (const auto& [path, file] : m_files) {
        if (path == BUNDLE_FILE) {
            files.emplace(path, ReadBundleFile());
        } else if (std::error_code ignored; fs::is_regular_file(m_folder / path, ignored)) {
            files.emplace(path, ReadTomlFile(m_folder / path));
        }
    }
    m_files = std::move(files);
    Publish();
    SetItems(m_files.at(BUNDLE_FILE).items);
}

std::vector<std::string> ConfigurationService::ItemNames() const {
    const std::lock_guard lock(ConfigurationMutex());
    return {m_itemKeys.begin(), m_itemKeys.end()};
}

ConfigObject* ConfigurationService::GetConfiguration(const std::string& path, const std::string& section) {
    if (ConfigObject* const known = Find(path, section)) {
        return known;
    }
    return TryRead(path) ? Find(path, section) : nullptr;
}

TomlFile ConfigurationService::ReadBundleFile() const {
    const fs::path path = m_folder / BUNDLE_FILE;
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::none) {
        throw std::runtime_error(path.string() + ": cannot be opened: " + error.message());
    }
    if (!fs::is_regular_file(status)) {
        throw std::runtime_error(path.string() + (fs::exists(status) ? ": is not a regular file" : ": no such file") +
                                 "; a configuration folder holds its configuration items in " + BUNDLE_FILE +
                                 ", in TOML");
    }
    TomlFile file = ReadTomlFile(path);
    if (!file.misfits.empty()) {
        throw std::runtime_error(file.misfits.front());
    }
    return file;
}

// Items that others set stay, unless the file has them too.
void ConfigurationService::SetItems(const std::map<std::string, std::string>& items) {
    CorbaConfigItems& configItems = *CorbaConfigItems::Instance();
    std::erase_if(m_itemKeys, [&](const std::string& key) {
        const bool isGone = !items.contains(key);
        if (isGone) {
            configItems.RemoveItem(key);
        }
        return isGone;
    });
    for (const auto& [key, value] : items) {
        m_itemKeys.insert(key);
        configItems.SetItem(key, value);
    }
}

// Returns null for a file that is not known.
ConfigObject* ConfigurationService::Find(const std::string& path, const std::string& section) {
    ReadPin pin;
    const PublishedFiles& files = m_published.Read(pin);
    const auto file = files.find(path);
    if (file == files.end()) {
        return nullptr;
    }
    const auto found = file->second.find(section);
    return found != file->second.end() ? found->second : &m_noItems;
}

// Returns false if the path leads out of the folder, or the file is missing or cannot be read or parsed.
bool ConfigurationService::TryRead(const std::string& path) {
    std::error_code ignored;
    if (!StaysInside(path) || !fs::is_regular_file(m_folder / path, ignored)) {
        return false;
    }
    const std::lock_guard lock(ConfigurationMutex());
    if (!m_files.contains(path)) {
        try {
            m_files.emplace(path, ReadTomlFile(m_folder / path));
        } catch (const std::runtime_error&) {
            return false;
        }
    }
    Publish();  // also a file that another thread read: it may have run out of memory before it published
    return true;
}

// Publishes m_files. The caller holds ConfigurationMutex.
void ConfigurationService::Publish() {
    auto published = std::make_unique<PublishedFiles>();
    for (const auto& [path, file] : m_files) {
        Sections& sections = (*published)[path];
        for (const auto& [name, items] : file.sections) {
            sections.emplace(name, &FindOrMake(path, name));
        }
    }
    for (auto& [name, section] : m_sections) {
        const auto file = m_files.find(name.first);
        const bool isKnown = file != m_files.end() && file->second.sections.contains(name.second);
        section.Replace(isKnown ? file->second.sections.at(name.second) : TomlFile::IntItems{});
    }
    m_published.Replace(std::move(published));
}

ConfigurationService::Section& ConfigurationService::FindOrMake(const std::string& path, const std::string& section) {
    return m_sections.try_emplace({path, section}).first->second;
}

}  // namespace NS_STANDALONE
