#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <kx_platform/dawsvcinterface.h>

#include "published.h"
#include "tomlfile.h"

namespace NS_STANDALONE {

/// The configuration folder: its bundle file gives the process's configuration items, and the data-access service
/// answers from each of its files. A file is read when it is first asked for. Questions about known files take no lock.
class ConfigurationService final : public NS_SERVICE::DAWSvcInterface {
public:
    /// Sets the configuration items. Throws std::runtime_error, and sets nothing, if the bundle file is missing, does
    /// not parse, or has an item of a type that items cannot have.
    explicit ConfigurationService(std::filesystem::path folder);
    /// Removes the configuration items that were set.
    ~ConfigurationService() override;
    ConfigurationService(const ConfigurationService&) = delete;
    ConfigurationService& operator=(const ConfigurationService&) = delete;

    /// Reads all known files again and sets the configuration items anew. Throws as the constructor does, and if
    /// another file no longer parses; then everything stays as it was.
    void Reload();

    /// The names of the configuration items that were set.
    [[nodiscard]] std::vector<std::string> ItemNames() const;

    /// Also returns null for a path that leads out of the folder, and for a file that does not parse. A section that
    /// the file lacks has no items.
    NS_SERVICE::ConfigObject* GetConfiguration(const std::string& path, const std::string& section) override;

private:
    class Section final : public NS_SERVICE::ConfigObject {
    public:
        Section();
        bool GetIntItemInfo(const std::string& key, int& value) override;
        void Replace(TomlFile::IntItems items);

    private:
        Published<TomlFile::IntItems> m_items;
    };

    using Sections = std::map<std::string, Section*>;
    using Files = std::map<std::string, TomlFile>;
    using PublishedFiles = std::map<std::string, Sections>;

    ConfigurationService(std::filesystem::path folder, PublishedFiles files);

    TomlFile ReadBundleFile() const;
    void SetItems(const std::map<std::string, std::string>& items);
    NS_SERVICE::ConfigObject* Find(const std::string& path, const std::string& section);
    bool TryRead(const std::string& path);
    void Publish();
    Section& FindOrMake(const std::string& path, const std::string& section);

    std::filesystem::path m_folder;
    std::set<std::string> m_itemKeys;  // of the items that this service set

    Files m_files;  // by path, as asked for; guarded by ConfigurationMutex, as are the sections
    // By path and section. Never removed: callers may keep pointers to them as long as the service lives.
    std::map<std::pair<std::string, std::string>, Section> m_sections;
    Section m_noItems;
    Published<PublishedFiles> m_published;  // finds m_sections without the mutex
};

}  // namespace NS_STANDALONE
