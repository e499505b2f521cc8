/// The inventory as a file: an SQLite database of three tables with a schema version.
///
/// The functions that take a file throw std::runtime_error and std::bad_alloc. The text of the error names the file
/// and, if there is one, the table and the row. The other functions throw nothing. Threads: any; processes and threads
/// that write one file wait a few seconds for each other.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <kx_standalone/export.h>

namespace NS_STANDALONE {

/// One NE.
struct NeRow {
    std::int32_t neId = 0;          ///< unique; 0 to 2147483647
    std::uint16_t neType = 0;       ///< must be in the table of NE types
    bool multiSubShelf = false;     ///< has several sub-shelves
    bool oamNumberOmitted = false;  ///< its OAM identifiers leave the MD and MA numbers out

    bool operator==(const NeRow&) const = default;
};

/// One NE type.
struct NeTypeRow {
    std::uint16_t neType = 0;  ///< unique
    std::string name;
    bool ipService = false;  ///< offers IP services
    bool klv = false;        ///< belongs to the KLV family

    bool operator==(const NeTypeRow&) const = default;
};

/// The cache of `DeviceDomainMgr` that a domain list belongs to.
enum class DomainCache { NE_TYPE_LIST, EQUIPMENT_TYPE };

/// Both caches.
inline constexpr std::array DOMAIN_CACHES{DomainCache::NE_TYPE_LIST, DomainCache::EQUIPMENT_TYPE};

/// Returns the name of a cache in files: "NE_TYPE_LIST" or "EQUIPMENT_TYPE"; "unknown" for any other value.
KX_STANDALONE_API std::string_view NameOf(DomainCache cache) noexcept;

/// Returns the cache of this name, or nothing.
KX_STANDALONE_API std::optional<DomainCache> FindDomainCache(std::string_view name) noexcept;

/// One NE type in one domain list; no two rows are equal.
struct DomainMemberRow {
    DomainCache cache = DomainCache::EQUIPMENT_TYPE;
    std::string domain;        ///< such as "OTN"; not empty
    std::uint16_t neType = 0;  ///< need not be in the table of NE types

    bool operator==(const DomainMemberRow&) const = default;
};

/// All rows of an inventory; read in the order of their keys.
struct Inventory {
    std::vector<NeTypeRow> neTypes;
    std::vector<NeRow> nes;
    std::vector<DomainMemberRow> domainMembers;

    bool operator==(const Inventory&) const = default;
};

/// Makes an empty inventory at `file`. The file appears when it is complete. Throws if there is one.
KX_STANDALONE_API void CreateInventory(const std::filesystem::path& file);
/// Returns all rows. Throws if the file is missing, not SQLite, of another schema version, has anything but the tables
/// of an inventory (a trigger, say), a row out of range, or a name that is not UTF-8.
KX_STANDALONE_API Inventory ReadInventory(const std::filesystem::path& file);
/// Replaces `file` by a new file with these rows and the same permissions. After a failure, or if the process is
/// killed, the file is the old one, and nothing is left beside it that would change a copy put there later. Throws
/// what `ReadInventory` throws, and if `file` or its folder may not be written. A symbolic link stays a link; hard
/// links and extended attributes stay with the old file.
KX_STANDALONE_API void ReplaceInventory(const std::filesystem::path& file, const Inventory& inventory);

}  // namespace NS_STANDALONE
