/// An inventory as three CSV files in one folder, the first line of each naming its columns:
///
///     ne.csv             ne_id,ne_type,multi_sub_shelf,oam_number_omitted
///     ne_type.csv        ne_type,name,ip_service,klv
///     domain_member.csv  cache,domain,ne_type
///
/// Yes and no are 1 and 0; a cache is "NE_TYPE_LIST" or "EQUIPMENT_TYPE".
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include <kx_standalone/inventoryfile.h>

#include "lines/fileinuse.h"

namespace NS_KX::NS_KXDU {

/// The three files, as messages call them.
std::vector<FileInUse> InventoryCsvFiles(const std::filesystem::path& folder);

/// Throws std::runtime_error, its text naming file, line and reason: the header line is missing, a row has too few or
/// too many columns or more than 1 MiB, a value is not what its column takes, an NE, an NE type or a domain member is
/// repeated, an NE is of an unknown type. Throws `Failure` with `Cause::INPUT` for a file that cannot be read.
NS_STANDALONE::Inventory ReadInventoryCsv(const std::filesystem::path& folder);

/// Makes the folder when there is none, and replaces the three files. Throws `Failure` with `Cause::OUTPUT` and
/// `ClosedPipe` as `Output` does.
void WriteInventoryCsv(const std::filesystem::path& folder, const NS_STANDALONE::Inventory& inventory);
/// The same, with the NEs that `nextNe` gives, until it gives none, in the place of the inventory's.
void WriteInventoryCsv(const std::filesystem::path& folder, const NS_STANDALONE::Inventory& inventory,
                       const std::function<std::optional<NS_STANDALONE::NeRow>()>& nextNe);

}  // namespace NS_KX::NS_KXDU
