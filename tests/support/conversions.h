/// All readers and writers as rows, for tests of all of them. Each row has the function of the library, its literal
/// counterpart and the typed call of `fdn.h`.
#pragma once

#include <string>
#include <string_view>
#include <type_traits>

#include <kx_domain_util/fdn.h>
#include <kx_domain_util/resIDUtil.h>

#include "support/literalresidutil.h"
#include "support/recordfields.h"

namespace NS_TEST {

/// A reader of a text, or of another type of input.
template <class Record_, class Input = std::string>
struct Reader {
    using Record = Record_;
    using Function = void (*)(const Input&, Record&);
    using TypedFunction = bool (*)(std::string_view, Record&, const NS_UTIL::Surroundings&);

    std::string_view name;
    Function library;
    Function literal;
    TypedFunction typed = nullptr;  ///< null if no typed call reads this input
};

/// `read` gets the class that converts, as a std::type_identity.
template <class Record, class Input = std::string, class Read>
Reader<Record, Input> MakeReader(std::string_view name, Read /*read*/,
                                 typename Reader<Record, Input>::TypedFunction typed = nullptr) {
    // `read` captures nothing, so a plain function can construct and call it.
    return {name,
            [](const Input& input, Record& record) { Read{}(std::type_identity<NS_UTIL::ResIDUtil>{}, input, record); },
            [](const Input& input, Record& record) { Read{}(std::type_identity<LiteralResIDUtil>{}, input, record); },
            typed};
}

/// A reader of a parsed FDN.
template <class Record>
struct MapReader : Reader<Record, NS_UTIL::MocLvlValueMap> {
    Reader<Record> afterParsing;  ///< gets the text, and parses it into the map first
};

/// As `MakeReader`.
template <class Record, class Read>
MapReader<Record> MakeMapReader(std::string_view name, Read read) {
    using NS_UTIL::MocLvlValueMap;
    return {MakeReader<Record, MocLvlValueMap>(name, read),
            MakeReader<Record>(name, []<class By>(By by, const std::string& fdn, Record& record) {
                MocLvlValueMap map;
                By::type::Fdn2MocLvlValueMap(fdn, map);
                Read{}(by, map, record);
            })};
}

/// Calls `visit` with the row of each reader that gets a text.
template <class Visit>
void ForEachReaderOfText(Visit visit) {
    using namespace NS_UTIL::NS_FDN;
    namespace NS_FDN = NS_UTIL::NS_FDN;
    using NS_UTIL::ResIDUtil;
    using Literal = LiteralResIDUtil;
    using namespace NS_DOMAIN;
    visit(Reader<OSIndex>{"ResID2OSIndex", &ResIDUtil::ResID2OSIndex, &Literal::ResID2OSIndex,
                          &NS_FDN::ReadInto<OSIndex>});
    visit(Reader<ONEIndex>{"ResID2ONEIndex", &ResIDUtil::ResID2ONEIndex, &Literal::ResID2ONEIndex,
                           &NS_FDN::ReadInto<ONEIndex>});
    visit(Reader<NEIndex>{"ResID2NEIndex", &ResIDUtil::ResID2NEIndex, &Literal::ResID2NEIndex,
                          &NS_FDN::ReadInto<NEIndex>});
    visit(Reader<ShelfIndex>{"ResID2ShelfIndex", &ResIDUtil::ResID2ShelfIndex, &Literal::ResID2ShelfIndex,
                             &NS_FDN::ReadInto<ShelfIndex>});
    visit(Reader<SlotIndex>{"ResID2SlotIndex", &ResIDUtil::ResID2SlotIndex, &Literal::ResID2SlotIndex,
                            &NS_FDN::ReadInto<SlotIndex>});
    visit(Reader<SlotIndex>{"ResID2SubSlotIndex", &ResIDUtil::ResID2SubSlotIndex, &Literal::ResID2SubSlotIndex,
                            &NS_FDN::ReadInto<SubSlot>});
    visit(Reader<CardIndex>{"ResID2CardIndex", &ResIDUtil::ResID2CardIndex, &Literal::ResID2CardIndex,
                            &NS_FDN::ReadInto<CardIndex>});
    visit(Reader<PortIndex>{"ResID2PortIndex", &ResIDUtil::ResID2PortIndex, &Literal::ResID2PortIndex,
                            &NS_FDN::ReadInto<PortIndex>});
    visit(Reader<CtpKey_T>{"ResID2PortIndex", &ResIDUtil::ResID2PortIndex, &Literal::ResID2PortIndex,
                           &NS_FDN::ReadInto<PortOfKey>});
    visit(Reader<CtpKey_T>{"ResID2APIndex", &ResIDUtil::ResID2APIndex, &Literal::ResID2APIndex,
                           &NS_FDN::ReadInto<CtpKey_T>});
    visit(Reader<TPIndex>{"ResID2TPIndex", &ResIDUtil::ResID2TPIndex, &Literal::ResID2TPIndex,
                          &NS_FDN::ReadInto<TPIndex>});
    visit(Reader<PortIndex>{"ResID2LoopBackPortIndex", &ResIDUtil::ResID2LoopBackPortIndex,
                            &Literal::ResID2LoopBackPortIndex, &NS_FDN::ReadInto<LoopBackPort>});

    visit(Reader<PWIndex>{"ResID2PWIndex", &ResIDUtil::ResID2PWIndex, &Literal::ResID2PWIndex,
                          &NS_FDN::ReadInto<PWIndex>});
    visit(Reader<PWSwitchIndex>{"ResID2PWSwitchIndex", &ResIDUtil::ResID2PWSwitchIndex, &Literal::ResID2PWSwitchIndex,
                                &NS_FDN::ReadInto<PWSwitchIndex>});
    visit(MakeReader<ServiceGroup>(
        "ResID2GroupID",
        []<class By>(By, const std::string& fdn, ServiceGroup& service) {
            By::type::ResID2GroupID(fdn, service.group);
        },
        [](std::string_view fdn, ServiceGroup& service, const NS_UTIL::Surroundings& surroundings) {
            return NS_FDN::ReadInto<GroupId>(fdn, service.group, surroundings);
        }));
    visit(Reader<VPNTrailIndex>{"ResID2VPNTrailIndex", &ResIDUtil::ResID2VPNTrailIndex, &Literal::ResID2VPNTrailIndex,
                                &NS_FDN::ReadInto<VPNTrailIndex>});
    visit(Reader<TunnelTrailIndex>{"ResID2TunnelTrailIndex", &ResIDUtil::ResID2TunnelTrailIndex,
                                   &Literal::ResID2TunnelTrailIndex, &NS_FDN::ReadInto<TunnelTrailIndex>});
    visit(Reader<PWTrailIndex>{"ResID2PWTrailIndex", &ResIDUtil::ResID2PWTrailIndex, &Literal::ResID2PWTrailIndex,
                               &NS_FDN::ReadInto<PWTrailIndex>});
    visit(Reader<TNPIndex_T>{"ResID2TNPIndex", &ResIDUtil::ResID2TNPIndex, &Literal::ResID2TNPIndex,
                             &NS_FDN::ReadInto<TNPIndex_T>});
    visit(Reader<ServiceIndex>{"ResID2SVCIndex", &ResIDUtil::ResID2SVCIndex, &Literal::ResID2SVCIndex,
                               &NS_FDN::ReadInto<ServiceIndex>});
    visit(Reader<TunnelIndex>{"ResID2TunnelIndex", &ResIDUtil::ResID2TunnelIndex, &Literal::ResID2TunnelIndex,
                              &NS_FDN::ReadInto<TunnelIndex>});
    visit(Reader<TDIndex>{"ResID2TDIndex", &ResIDUtil::ResID2TDIndex, &Literal::ResID2TDIndex,
                          &NS_FDN::ReadInto<TDIndex>});

    visit(Reader<MDIndex>{"ResID2MDIndex", &ResIDUtil::ResID2MDIndex, &Literal::ResID2MDIndex,
                          &NS_FDN::ReadInto<MDIndex>});
    visit(Reader<MAIndex>{"ResID2MAIndex", &ResIDUtil::ResID2MAIndex, &Literal::ResID2MAIndex,
                          &NS_FDN::ReadInto<MAIndex>});
    visit(Reader<MIPIndex>{"ResID2MIPIndex", &ResIDUtil::ResID2MIPIndex, &Literal::ResID2MIPIndex,
                           &NS_FDN::ReadInto<MIPIndex>});
    visit(MakeReader<EndPointReading>(
        "ResID2MepIndex",
        []<class By>(By, const std::string& fdn, EndPointReading& reading) {
            reading.answer = By::type::ResID2MepIndex(fdn, reading.mep);
        },
        [](std::string_view fdn, EndPointReading& reading, const NS_UTIL::Surroundings& surroundings) {
            return NS_FDN::ReadInto<MEPIndex>(fdn, reading.mep, surroundings);  // does not set reading.answer
        }));
}

/// Calls `visit` with the row of each reader that gets a parsed FDN.
template <class Visit>
void ForEachReaderOfMap(Visit visit) {
    using namespace NS_DOMAIN;
    using Map = NS_UTIL::MocLvlValueMap;
    visit(MakeMapReader<MDIndex>("FillMDIndex",
                                 []<class By>(By, const Map& map, MDIndex& md) { By::type::FillMDIndex(map, md); }));
    visit(MakeMapReader<MAIndex>("FillMAIndex",
                                 []<class By>(By, const Map& map, MAIndex& ma) { By::type::FillMAIndex(map, ma); }));
    visit(MakeMapReader<MIPIndex>(
        "FillMIPIndex", []<class By>(By, const Map& map, MIPIndex& mip) { By::type::FillMIPIndex(map, mip); }));
}

/// Calls `visit` with each reader's row; those of maps parse the text first.
template <class Visit>
void ForEachReader(Visit visit) {
    ForEachReaderOfText(visit);
    ForEachReaderOfMap([&visit](const auto& reader) { visit(reader.afterParsing); });
}

/// The arguments that writers take besides record and text.
struct WriterArguments {
    bool flag = false;         // `asLogical` or `withSubIf`
    unsigned long neType = 0;  // of `PortIndex2ResIDByNEType`
};

template <class Record_>
struct Writer {
    using Record = Record_;
    using Function = void (*)(const Record&, std::string&, const WriterArguments&);
    using TypedFunction = void (*)(const Record&, std::string&, const WriterArguments&, const NS_UTIL::Surroundings&);

    std::string_view name;
    std::string_view flagName;  // empty if it takes no flag
    Function library;
    Function literal;
    TypedFunction typed;
};

/// Writes by the typed call: as the second kind if the flag is set, else as the first.
template <class Kind, class KindWithFlag = Kind>
void WriteTyped(const NS_UTIL::NS_FDN::RecordOf<Kind>& record, std::string& fdn, const WriterArguments& arguments,
                const NS_UTIL::Surroundings& surroundings) {
    if (arguments.flag) {
        NS_UTIL::NS_FDN::WriteInto<KindWithFlag>(record, fdn, surroundings);
    } else {
        NS_UTIL::NS_FDN::WriteInto<Kind>(record, fdn, surroundings);
    }
}

/// As `MakeReader`.
template <class Record, class Write>
Writer<Record> MakeWriter(std::string_view name, std::string_view flagName, Write /*write*/,
                          typename Writer<Record>::TypedFunction typed) {
    return {name, flagName,
            [](const Record& record, std::string& fdn, const WriterArguments& arguments) {
                Write{}(std::type_identity<NS_UTIL::ResIDUtil>{}, record, fdn, arguments);
            },
            [](const Record& record, std::string& fdn, const WriterArguments& arguments) {
                Write{}(std::type_identity<LiteralResIDUtil>{}, record, fdn, arguments);
            },
            typed};
}

/// Calls `visit` with each writer's row.
template <class Visit>
void ForEachWriter(Visit visit) {
    using namespace NS_DOMAIN;
    using namespace NS_UTIL::NS_FDN;
    using NS_UTIL::Surroundings;
    using Text = std::string;
    using Arguments = WriterArguments;
    visit(MakeWriter<OSIndex>(
        "OSID2ResID", "",
        []<class By>(By, const OSIndex& os, Text& fdn, const Arguments&) { By::type::OSID2ResID(os.osId, fdn); },
        &WriteTyped<OSIndex>));
    visit(MakeWriter<ONEIndex>(
        "ONEID2ResID", "",
        []<class By>(By, const ONEIndex& one, Text& fdn, const Arguments&) { By::type::ONEID2ResID(one.oneId, fdn); },
        &WriteTyped<ONEIndex>));
    visit(MakeWriter<NEPath>(
        "NEID2ResID", "",
        []<class By>(By, const NEPath& path, Text& fdn, const Arguments&) {
            By::type::NEID2ResID(path.oneId, path.neId, fdn);
        },
        [](const NEPath& path, Text& fdn, const Arguments&, const Surroundings& surroundings) {
            NS_UTIL::NS_FDN::WriteInto<ContainedNE>({path.oneId, path.neId}, fdn, surroundings);
        }));
    visit(MakeWriter<OSIndex>(
        "OSIndex2ResID", "",
        []<class By>(By, const OSIndex& os, Text& fdn, const Arguments&) { By::type::OSIndex2ResID(os, fdn); },
        &WriteTyped<OSIndex>));
    visit(MakeWriter<ONEIndex>(
        "ONEIndex2ResID", "",
        []<class By>(By, const ONEIndex& one, Text& fdn, const Arguments&) { By::type::ONEIndex2ResID(one, fdn); },
        &WriteTyped<ONEIndex>));
    visit(MakeWriter<NEIndex>(
        "NEIndex2ResID", "",
        []<class By>(By, const NEIndex& ne, Text& fdn, const Arguments&) { By::type::NEIndex2ResID(ne, fdn); },
        &WriteTyped<NEIndex>));
    visit(MakeWriter<ShelfIndex>(
        "ShelfIndex2ResID", "",
        []<class By>(By, const ShelfIndex& shelf, Text& fdn, const Arguments&) {
            By::type::ShelfIndex2ResID(shelf, fdn);
        },
        &WriteTyped<ShelfIndex>));
    visit(MakeWriter<SlotIndex>(
        "SlotIndex2ResID", "",
        []<class By>(By, const SlotIndex& slot, Text& fdn, const Arguments&) { By::type::SlotIndex2ResID(slot, fdn); },
        &WriteTyped<SlotIndex>));
    visit(MakeWriter<SlotIndex>(
        "SubSlotIndex2ResID", "",
        []<class By>(By, const SlotIndex& subSlot, Text& fdn, const Arguments&) {
            By::type::SubSlotIndex2ResID(subSlot, fdn);
        },
        &WriteTyped<SubSlot>));
    visit(MakeWriter<CardIndex>(
        "CardIndex2ResID", "",
        []<class By>(By, const CardIndex& card, Text& fdn, const Arguments&) { By::type::CardIndex2ResID(card, fdn); },
        &WriteTyped<CardIndex>));
    visit(MakeWriter<PortIndex>(
        "PortIndex2ResID", "asLogical",
        []<class By>(By, const PortIndex& port, Text& fdn, const Arguments& arguments) {
            By::type::PortIndex2ResID(port, fdn, arguments.flag);
        },
        &WriteTyped<AsPhysical<PortIndex>, AsLogical<PortIndex>>));
    visit(MakeWriter<PortIndex>(
        "PortIndex2ResIDByNEType", "asLogical",
        []<class By>(By, const PortIndex& port, Text& fdn, const Arguments& arguments) {
            By::type::PortIndex2ResIDByNEType(port, fdn, arguments.flag, arguments.neType);
        },
        [](const PortIndex& port, Text& fdn, const Arguments& arguments, const Surroundings&) {
            WriteTyped<AsPhysical<PortByNEType>, AsLogical<PortByNEType>>(port, fdn, arguments,
                                                                          NS_UTIL::KnownNEType(arguments.neType));
        }));
    visit(MakeWriter<CtpKey_T>(
        "PortIndex2ResID", "withSubIf",
        []<class By>(By, const CtpKey_T& key, Text& fdn, const Arguments& arguments) {
            By::type::PortIndex2ResID(key, fdn, arguments.flag);
        },
        &WriteTyped<PortOfKey, SubInterface>));
    visit(MakeWriter<CtpKey_T>(
        "APIndex2ResID", "asLogical",
        []<class By>(By, const CtpKey_T& key, Text& fdn, const Arguments& arguments) {
            By::type::APIndex2ResID(key, fdn, arguments.flag);
        },
        &WriteTyped<AsPhysical<CtpKey_T>, AsLogical<CtpKey_T>>));
    visit(MakeWriter<TPIndex>(
        "TPIndex2ResID", "",
        []<class By>(By, const TPIndex& tp, Text& fdn, const Arguments&) { By::type::TPIndex2ResID(tp, fdn); },
        &WriteTyped<TPIndex>));
    visit(MakeWriter<PWIndex>(
        "PWIndex2ResID", "",
        []<class By>(By, const PWIndex& pw, Text& fdn, const Arguments&) { By::type::PWIndex2ResID(pw, fdn); },
        &WriteTyped<PWIndex>));
    visit(MakeWriter<MDIndex>(
        "MDIndex2ResID", "",
        []<class By>(By, const MDIndex& md, Text& fdn, const Arguments&) { By::type::MDIndex2ResID(md, fdn); },
        &WriteTyped<MDIndex>));
    visit(MakeWriter<MAIndex>(
        "MAIndex2ResID", "",
        []<class By>(By, const MAIndex& ma, Text& fdn, const Arguments&) { By::type::MAIndex2ResID(ma, fdn); },
        &WriteTyped<MAIndex>));
    visit(MakeWriter<MEPIndex>(
        "MepIndex2ResID", "",
        []<class By>(By, const MEPIndex& mep, Text& fdn, const Arguments&) { By::type::MepIndex2ResID(mep, fdn); },
        &WriteTyped<MEPIndex>));
    visit(MakeWriter<MEPIndex>(
        "RmepIndex2ResID", "",
        []<class By>(By, const MEPIndex& mep, Text& fdn, const Arguments&) { By::type::RmepIndex2ResID(mep, fdn); },
        &WriteTyped<RemoteMEP>));
    visit(MakeWriter<MIPIndex>(
        "MIPIndex2ResID", "",
        []<class By>(By, const MIPIndex& mip, Text& fdn, const Arguments&) { By::type::MIPIndex2ResID(mip, fdn); },
        &WriteTyped<MIPIndex>));
}

}  // namespace NS_TEST
