#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include <kx_platform/dawsvcinterface.h>

#include "published.h"
#include "tomlfile.h"

namespace NS_STANDALONE {

/// The configuration folder: its bundle file gives the process's configuration items, and the data-access service
/// answers from each of its files. A file is read when it is first asked for; what is known already is answered without
/// a lock.
class ConfigurationService final : public NS_SERVICE::DAWSvcInterface {
public:
    /// Sets the configuration items. Throws std::runtime_error, and sets nothing, when the bundle file is missing, does
    /// not parse, or has an item of a type that items cannot have.
    explicit ConfigurationService(std::filesystem::path folder);
    /// Removes the configuration items that were set.
    ~ConfigurationService() override;
    ConfigurationService(const ConfigurationService&) = delete;
    ConfigurationService& operator=(const ConfigurationService&) = delete;

    /// Reads all files again that are known, and sets the configuration items anew. Throws as the constructor does, and
    /// when another file does not parse any more; all stays as it was then.
    void Reload();

    /// Null also for a path that leads out of the folder and for a file that does not parse. A section that the file
    /// does not have has no items.
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
    std::set<std::string> m_itemKeys;  // of the items that we set

    Files m_files;  // by path, as asked for; guarded by ConfigurationMutex, as are the sections
    // By path and section. Made once, since whoever asked may keep them as long as the service is there.
    std::map<std::pair<std::string, std::string>, Section> m_sections;
    Section m_noItems;
    Published<PublishedFiles> m_published;  // how m_sections are found without the mutex
};

}  // namespace NS_STANDALONE
