/// Every reader and writer with its inputs: a reader gets the identifiers that hold what it reads, a writer the records
/// read from those.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <kx_domain_util/resIDUtil.h>

#include "catalogue/kinds.h"
#include "corpus.h"
#include "support/conversions.h"

namespace NS_BENCH {

/// Conversions that are not named after the type of their kind, with that type.
inline constexpr auto OTHER_NAMES = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"OSID", "OSIndex"},
    {"ONEID", "ONEIndex"},
    {"APIndex", "CtpKey_T"},
    {"LoopBackPortIndex", "PortIndex"},
    {"SVCIndex", "ServiceIndex"},
    {"TNPIndex", "TNPIndex_T"},
    {"MepIndex", "MEPIndex"},
    {"RmepIndex", "MEPIndex:RMEP"},
});

/// "PortIndex" of "ResID2PortIndex", of "PortIndex2ResID" and of "PortIndex2ResIDByNEType".
inline std::string_view ThingOf(std::string_view conversion) {
    for (const std::string_view head : {"ResID2", "Fill"}) {
        if (conversion.starts_with(head)) {
            return conversion.substr(head.size());
        }
    }
    return conversion.substr(0, conversion.find("2ResID"));
}

/// The identifiers that hold a level with one of the last tags of the kind that `conversion` converts.
inline std::vector<std::string> IdentifiersFor(std::string_view conversion, const Corpus& corpus) {
    const std::string_view thing = ThingOf(conversion);
    const auto* const other = std::find_if(OTHER_NAMES.begin(), OTHER_NAMES.end(),
                                           [thing](const auto& names) { return names.first == thing; });
    const std::string_view type = other != OTHER_NAMES.end() ? other->second : thing;
    const NS_KX::Kind* const kind = NS_KX::FindKindByType(type);
    if (kind == nullptr) {
        throw std::logic_error(std::string(conversion) + ": no kind is called " + std::string(type));
    }
    return corpus.Holding(kind->lastTags);
}

/// The name of a row: the function, and the record if two functions share a name.
template <class Conversion>
std::string NameOf(const Conversion& conversion) {
    const std::string name(conversion.name);
    const bool isShared = name == "ResID2PortIndex" || name == "PortIndex2ResID";
    using Record = typename Conversion::Record;
    return isShared ? name + "(" + std::string(NS_TEST::RecordFields<Record>::NAME) + ")" : name;
}

/// Calls a reader, always into the same record.
template <class Record>
struct ReadCall {
    typename NS_TEST::Reader<Record>::Function read;
    Record record;

    const Record& operator()(const std::string& fdn) {
        if constexpr (std::is_same_v<Record, NS_DOMAIN::CtpKey_T>) {
            record.port.neId = -1;  // otherwise the reader of access points would think that the port is known
        }
        read(fdn, record);
        return record;
    }
};

/// Calls a reader of a parsed FDN, always into the same record.
template <class Record>
struct MapReadCall {
    typename NS_TEST::MapReader<Record>::Function read;
    Record record;

    const Record& operator()(const NS_UTIL::MocLvlValueMap& map) {
        read(map, record);
        return record;
    }
};

/// The levels of each identifier.
inline std::vector<NS_UTIL::MocLvlValueMap> MapsOf(const std::vector<std::string>& identifiers) {
    std::vector<NS_UTIL::MocLvlValueMap> maps;
    for (const std::string& fdn : identifiers) {
        NS_UTIL::ResIDUtil::Fdn2MocLvlValueMap(fdn, maps.emplace_back());
    }
    return maps;
}

/// The input of a writer.
template <class Record_>
struct WriterCase {
    Record_ record;
    NS_TEST::WriterArguments arguments;
};

/// Calls a writer, always into the same text.
template <class Record>
struct WriteCall {
    typename NS_TEST::Writer<Record>::Function write;
    std::string fdn;

    const std::string& operator()(const WriterCase<Record>& input) {
        write(input.record, fdn, input.arguments);
        return fdn;
    }
};

/// The record that the reader of `thing` makes of `fdn`.
template <class Record>
Record ReadRecord(std::string_view thing, const std::string& fdn) {
    using NS_UTIL::ResIDUtil;
    Record record;
    if constexpr (std::is_same_v<Record, NS_TEST::NEPath>) {
        NS_DOMAIN::ONEIndex one;
        NS_DOMAIN::NEIndex ne;
        ResIDUtil::ResID2ONEIndex(fdn, one);
        ResIDUtil::ResID2NEIndex(fdn, ne);
        record = {std::max(one.oneId, 0), ne.neId};
    } else if constexpr (std::is_same_v<Record, NS_DOMAIN::MEPIndex>) {
        ResIDUtil::ResID2MepIndex(fdn, record);
    } else {
        bool isRead = false;
        NS_TEST::ForEachReaderOfText([&]<class Other>(const NS_TEST::Reader<Other>& reader) {
            if constexpr (std::is_same_v<Other, Record>) {
                if (!isRead || ThingOf(reader.name) == thing) {
                    record = Record();
                    reader.library(fdn, record);
                    isRead = true;
                }
            }
        });
    }
    if constexpr (std::is_same_v<Record, NS_DOMAIN::PWIndex>) {
        record.resId.erase(0, record.resId.find(',') + 1);  // the writer puts the NE level before it
    }
    if constexpr (std::is_same_v<Record, NS_DOMAIN::TPIndex>) {
        NS_UTIL::MocLvlValueMap levels;  // no reader reads the paths
        ResIDUtil::Fdn2MocLvlValueMap(fdn, levels);
        ResIDUtil::GetValueByMocLvlName("VC4", levels, record.vc4Id);
        ResIDUtil::GetValueByMocLvlName("VC12", levels, record.vc12Id);
    }
    return record;
}

template <class Record>
NS_TEST::WriterArguments ArgumentsFor(const Record& record, std::string_view flagName) {
    NS_TEST::WriterArguments arguments;
    if constexpr (std::is_same_v<Record, NS_DOMAIN::CtpKey_T>) {
        arguments.flag = flagName == "withSubIf" ? record.subIfId > 0 : record.port.isLogical;
    }
    if constexpr (std::is_same_v<Record, NS_DOMAIN::PortIndex>) {
        arguments.flag = record.isLogical;
        std::uint32_t neType = 0;
        NS_TEST::LiteralResIDUtil::inventory->QueryNEType(record.neId, neType, true);
        arguments.neType = neType;
    }
    return arguments;
}

template <class Record>
std::vector<WriterCase<Record>> CasesFor(const NS_TEST::Writer<Record>& writer, const Corpus& corpus) {
    std::vector<WriterCase<Record>> cases;
    for (const std::string& fdn : IdentifiersFor(writer.name, corpus)) {
        const Record record = ReadRecord<Record>(ThingOf(writer.name), fdn);
        cases.push_back({record, ArgumentsFor(record, writer.flagName)});
    }
    return cases;
}

}  // namespace NS_BENCH
