#pragma once

#include <optional>
#include <string>
#include <vector>

#include <kx_standalone/inventoryfile.h>

#include "catalogue/statistics.h"
#include "lines/bufferedoutput.h"
#include "report/alarms.h"
#include "report/network.h"

namespace NS_KX::NS_KXDU {

/// What a page shows.
struct PageContent {
    const Network& network;
    ProblemSearch search;
    std::vector<std::string> inputs;            ///< names of the files; none: standard input
    const NS_STANDALONE::Inventory* inventory;  ///< null: none
    std::string inventoryName;
    const Alarms* alarms;  ///< null: none
    std::string alarmsName;
};

/// Writes the page: one HTML file that needs nothing else. Throws as `BufferedOutput` does.
void WritePage(const PageContent& content, BufferedOutput& output);

}  // namespace NS_KX::NS_KXDU
