#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "cli/chosennes.h"
#include "lines/linerun.h"

namespace NS_KX::NS_KXDU {

/// Where the alarms are.
struct Alarms {
    std::uint64_t total = 0;
    std::uint64_t unread = 0;  ///< lines without the identifier of an NE
    /// By NE, and there by identifier.
    std::map<std::int32_t, std::map<std::string, std::uint64_t, std::less<>>> nes;

    /// Of how many identifiers a page holds the alarms.
    static constexpr std::size_t MOST_IDENTIFIERS = 100'000;
};

/// Which alarms to read, as the user asked for it.
struct AlarmOptions {
    std::string file;
    std::string field;      ///< of a line: its number, from 0; or the name of a member of JSON lines
    char delimiter = '\t';  ///< between fields
};

/// Reads one alarm a line. Alarms of NEs that are not chosen do not count. Throws `Failure` as `RunLines` does, and
/// with `Cause::INPUT` if there are alarms of more than `Alarms::MOST_IDENTIFIERS` identifiers.
Alarms ReadAlarms(const AlarmOptions& options, const ChosenNes& nes, const BulkOptions& bulk,
                  const std::vector<FileInUse>& filesInUse);

}  // namespace NS_KX::NS_KXDU
