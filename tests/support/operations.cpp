#include "support/operations.h"

#include <array>
#include <bitset>
#include <list>
#include <map>
#include <new>
#include <utility>

#include <kx_domain_util/constanttables.h>
#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/fbtype.h>
#include <kx_domain_util/fdn.h>
#include <kx_domain_util/netype.h>
#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/processexception.h>
#include <kx_domain_util/resIDUtil.h>
#include <kx_domain_util/surroundings.h>
#include <kx_domain_util/utilcommon.h>
#include <kx_platform/bundlemgr.h>
#include <kx_platform/configitems.h>
#include <kx_platform/readpin.h>
#include <kx_platform/selfutilcommon.h>
#include <kx_platform/textutil.h>

#include "support/conversionlists.h"
#include "support/conversions.h"
#include "support/generated.h"
#include "support/services.h"

namespace NS_TEST {

namespace {

// One operation: call writes its answer to its argument.
template <class Value>
struct Row {
    std::string name;
    std::function<void(Value&)> call;
};

template <class Value>
class AnswerOf : public Answer {
public:
    explicit AnswerOf(const std::function<void(Value&)>& call) : m_call(call) {}

    void Ask() override { m_call(m_value); }
    bool Equals(const Answer& other) const override { return m_value == static_cast<const AnswerOf&>(other).m_value; }

private:
    const std::function<void(Value&)>& m_call;
    Value m_value{};
};

class Table {
public:
    template <class Value>
    void operator()(Row<Value> row) {
        m_operations.push_back({std::move(row.name), [call = std::move(row.call)]() -> std::unique_ptr<Answer> {
                                    return std::make_unique<AnswerOf<Value>>(call);
                                }});
    }

    std::vector<Operation> Take() { return std::move(m_operations); }

private:
    std::vector<Operation> m_operations;
};

const std::string LONG_PIECES{"the first of some long pieces|another one of the long pieces||the last of them"};
const std::string LONG_ITEMS{
    "the name of the first item=the value of the first item,the name of the second item=the value of the second item"};

// Items that are already parsed, by name and by number.
const std::map<std::string, std::string> TEXTS{{LONG_KEY, LONG_TEXT}, {"7", "7"}};
const std::map<int, std::string> LINES{{7, LONG_TEXT}};

// Identifiers that together fill what each reader can fill.
const std::array<std::string, 4> LONG_IDENTIFIERS{
    "OS=7,ONE=3,NE=12,FR=1,S=3,CP=-1,SS=2,SC=-1,PP=16|1025|7|a port with quite a long name,SUBIF=5",
    "NE=12,S=0,LP=16|65547|7|a logical port with a long name,AP=1|2|3,VR=6,VC4=5",
    "NE=5,MD=3|a maintenance domain with a long name,MA=4|an association with a long name,MIP=7|a long point",
    "NE=5,PWE3=1|2|3|4|5|6|7|8|9,TUNNEL=1|2|3|4|5|6|7|8|9"};
const std::string END_POINT{
    "NE=5,MD=3|a maintenance domain with a long name,MA=4|an association with a long name,MEP=7"};

// A record whose texts are long and whose numbers are 1.
template <class Record>
Record LongRecord() {
    Record record;
    ForEachField(record, [](std::string_view, auto& field) {
        using Value = std::remove_reference_t<decltype(field)>;
        if constexpr (HasFields<Value>) {
            field = LongRecord<Value>();
        } else if constexpr (std::is_same_v<Value, std::string>) {
            field = LONG_TEXT;
        } else {
            field = 1;
        }
    });
    return record;
}

void AddConversions(Table& add) {
    const std::string scope = "NS_UTIL::ResIDUtil::";
    ForEachReader([&]<class Record>(const Reader<Record>& reader) {
        using Answer = std::array<Record, LONG_IDENTIFIERS.size() + 1>;
        add(Row<Answer>{scope + std::string(reader.name), [read = reader.library](Answer& records) {
                            read(END_POINT, records.back());
                            for (std::size_t at = 0; at < LONG_IDENTIFIERS.size(); ++at) {
                                read(LONG_IDENTIFIERS[at], records[at]);
                            }
                        }});
    });
    ForEachWriter([&]<class Record>(const Writer<Record>& writer) {
        using Answer = std::array<std::string, 4>;
        RecordGenerator generator(91);
        const std::array<Record, 4> records{Record{}, LongRecord<Record>(), generator.Next<Record>(),
                                            generator.Next<Record>()};
        add(Row<Answer>{scope + std::string(writer.name), [records, write = writer.library](Answer& fdns) {
                            for (std::size_t at = 0; at < records.size(); ++at) {
                                write(records[at], fdns[at], {at % 2 != 0, 1911});
                            }
                        }});
    });
}

void AddOthersOfResIDUtil(Table& add) {
    using NS_UTIL::MocLvlValueMap;
    using NS_UTIL::ResIDUtil;
    using Flag = Row<bool>;
    using Text = Row<std::string>;
    using Pieces = Row<std::vector<std::string>>;
    static const MocLvlValueMap map{{LONG_KEY, {LONG_TEXT, "7"}}};
    static const std::vector<std::string> values{LONG_TEXT, "", LONG_TEXT};
    static const std::string level = LONG_KEY + "=" + LONG_PIECES;
    add(Row<MocLvlValueMap>{"NS_UTIL::ResIDUtil::Fdn2MocLvlValueMap", [](MocLvlValueMap& levels) {
                                ResIDUtil::Fdn2MocLvlValueMap(LONG_IDENTIFIERS.front(), levels);
                            }});
    add(Pieces{"NS_UTIL::ResIDUtil::ResolveMocLevelObj", [](std::vector<std::string>& pieces) {
                   std::string tag;
                   ResIDUtil::ResolveMocLevelObj(level, tag, pieces);
               }});
    add(Text{"NS_UTIL::ResIDUtil::GetValueByMocLvlName",
             [](std::string& value) { ResIDUtil::GetValueByMocLvlName(LONG_KEY, map, value, 0); }});
    add(Row<int>{"NS_UTIL::ResIDUtil::GetValueByMocLvlName",
                 [](int& value) { ResIDUtil::GetValueByMocLvlName(LONG_KEY, map, value, 1); }});
    add(Row<int>{"NS_UTIL::ResIDUtil::GetValueByMocLvlName",
                 [](int& value) { ResIDUtil::GetValueByMocLvlName(LONG_KEY, map, value); }});
    add(Text{"NS_UTIL::ResIDUtil::ConstructMocLevelObj",
             [](std::string& text) { ResIDUtil::ConstructMocLevelObj(LONG_KEY, values, text); }});
    add(Pieces{"NS_UTIL::ResIDUtil::ResolveFDNByMoc",
               [](std::vector<std::string>& pieces) { ResIDUtil::ResolveFDNByMoc(level, "=", 3, pieces); }});
    add(Text{"NS_UTIL::ResIDUtil::GetMOCFromFDN", [](std::string& moc) { moc = ResIDUtil::GetMOCFromFDN(level); }});
    add(Flag{"NS_UTIL::ResIDUtil::IsServiceFDN", [](bool& is) { is = ResIDUtil::IsServiceFDN(LONG_KEY); }});
    add(Row<NS_DOMAIN_SOUTHAPISET::TEUniResID>{
        "NS_UTIL::ResIDUtil::Domain2TE",
        [from = LongRecord<NS_DOMAIN::UniResID>()](NS_DOMAIN_SOUTHAPISET::TEUniResID& to) {
            ResIDUtil::Domain2TE(from, to);
        }});
    add(Row<NS_DOMAIN::UniResID>{"NS_UTIL::ResIDUtil::TE2Domain",
                                 [from = LongRecord<NS_DOMAIN_SOUTHAPISET::TEUniResID>()](NS_DOMAIN::UniResID& to) {
                                     ResIDUtil::TE2Domain(from, to);
                                 }});
}

void AddUtilCommon(Table& add) {
    using NS_UTIL::UtilCommon;
    using TextMap = std::map<std::string, std::string>;
    using LineMap = std::map<int, std::string>;
    using Flag = Row<bool>;
    using Number = Row<int>;
    using Text = Row<std::string>;
    static const std::string comma{","};
    static const std::string seven{"7"};
    static const std::string path{"a client rate of a long name:1-och:2-odu2:3-another client rate of a long name:4"};
    add(Flag{"NS_UTIL::UtilCommon::Instance", [](bool& is) { is = UtilCommon::Instance() != nullptr; }});
    add(Flag{"NS_UTIL::UtilCommon::Destroy", [](bool& is) {
                 is = UtilCommon::Instance() != nullptr;
                 UtilCommon::Destroy();
             }});
    add(Row<TextMap>{"NS_UTIL::UtilCommon::GetSpliteFDNData",
                     [](TextMap& out) { UtilCommon::Instance()->GetSpliteFDNData(out, LONG_ITEMS, comma); }});
    add(Row<TextMap>{"NS_UTIL::UtilCommon::GetSplitNameValueMapbyTag",
                     [](TextMap& out) { UtilCommon::Instance()->GetSplitNameValueMapbyTag(out, LONG_ITEMS, comma); }});
    add(Text{"NS_UTIL::UtilCommon::GetDataFromMap",
             [](std::string& value) { UtilCommon::Instance()->GetDataFromMap(TEXTS, LONG_KEY, value); }});
    add(Text{"NS_UTIL::UtilCommon::GetDataFromMap",
             [](std::string& value) { UtilCommon::Instance()->GetDataFromMap(LINES, 7, value); }});
    add(Number{"NS_UTIL::UtilCommon::GetIntegerValueByName",
               [](int& value) { UtilCommon::Instance()->GetIntegerValueByName(TEXTS, seven, value); }});
    add(Text{"NS_UTIL::UtilCommon::GetSupportCfgItem",
             [](std::string& value) { UtilCommon::Instance()->GetSupportCfgItem(LONG_KEY, value); }});
    add(Flag{"NS_UTIL::UtilCommon::IsSupportCfgItem",
             [](bool& is) { is = UtilCommon::Instance()->IsSupportCfgItem(LONG_KEY); }});
    add(Text{"NS_UTIL::UtilCommon::GetMoc", [](std::string& moc) {
                 static const std::string fdn = "NE=1," + LONG_KEY + "=1";
                 moc = UtilCommon::Instance()->GetMoc(fdn);
             }});
    add(Row<LineMap>{"NS_UTIL::UtilCommon::GetSplitePPDataByLine",
                     [](LineMap& out) { UtilCommon::Instance()->GetSplitePPDataByLine(out, LONG_PIECES); }});
    add(Row<LineMap>{"NS_UTIL::UtilCommon::GetSpliteFBDataByLine",
                     [](LineMap& out) { UtilCommon::Instance()->GetSpliteFBDataByLine(out, LONG_PIECES); }});
    add(Row<std::map<int, int>>{"NS_UTIL::UtilCommon::GetSplitePATHDataByLine", [](std::map<int, int>& out) {
                                    UtilCommon::Instance()->GetSplitePATHDataByLine(out, path);
                                }});
    add(Number{"NS_UTIL::UtilCommon::GetPFMPacketSize",
               [](int& size) { size = UtilCommon::Instance()->GetPFMPacketSize(); }});
    add(Number{"NS_UTIL::UtilCommon::FBType2InterfaceLevel",
               [](int& level) { UtilCommon::Instance()->FBType2InterfaceLevel(level, 897); }});
    add(Number{"NS_UTIL::UtilCommon::InterfaceLevel2FBType",
               [](int& fbType) { UtilCommon::Instance()->InterfaceLevel2FBType(fbType, 12306); }});
    add(Number{"NS_UTIL::UtilCommon::GetBidirFBType",
               [](int& fbType) { fbType = UtilCommon::Instance()->GetBidirFBType(918); }});
    add(Text{"NS_UTIL::UtilCommon::InterfaceCTPId2TMFName",
             [](std::string& name) { UtilCommon::Instance()->InterfaceCTPId2TMFName(65524UL, name); }});
    add(Row<unsigned long>{"NS_UTIL::UtilCommon::InterfaceTMFCTPName2ID", [](unsigned long& ctpId) {
                               UtilCommon::Instance()->InterfaceTMFCTPName2ID(LONG_TEXT, ctpId);
                           }});
    add(Number{"NS_UTIL::UtilCommon::SetTpNoToLocation",
               [](int& location) { UtilCommon::Instance()->SetTpNoToLocation(location, 12306, 5); }});
    add(Number{"NS_UTIL::UtilCommon::GetTpNoFromLocation",
               [](int& tpNo) { UtilCommon::Instance()->GetTpNoFromLocation((1231 << 16) + 5, 12306, tpNo); }});
    add(Row<NS_DOMAIN::TPIndex>{"NS_UTIL::UtilCommon::SetTpNo",
                                [](NS_DOMAIN::TPIndex& tp) { UtilCommon::Instance()->SetTpNo(tp, 12306, 5); }});
    add(Number{"NS_UTIL::UtilCommon::GetTpNo",
               [](int& tpNo) { tpNo = UtilCommon::Instance()->GetTpNo(NS_DOMAIN::TPIndex{}, 12306); }});
    add(Row<std::map<std::string, unsigned int>>{
        "NS_UTIL::UtilCommon::InitClientRateMap",
        [](std::map<std::string, unsigned int>& rates) { UtilCommon::Instance()->InitClientRateMap(rates); }});
    add(Flag{"NS_UTIL::UtilCommon::IsTiRoadmOpticalBoard",
             [](bool& is) { is = UtilCommon::Instance()->IsTiRoadmOpticalBoard(2970); }});
    // Filling a table once more changes no answer.
    add(Number{"NS_UTIL::UtilCommon::InitFbType2ILMap", [](int& level) {
                   UtilCommon::Instance()->InitFbType2ILMap();
                   UtilCommon::Instance()->FBType2InterfaceLevel(level, 897);
               }});
    add(Number{"NS_UTIL::UtilCommon::InitIL2FbTypeMap", [](int& fbType) {
                   UtilCommon::Instance()->InitIL2FbTypeMap();
                   UtilCommon::Instance()->InterfaceLevel2FBType(fbType, 12306);
               }});
    add(Flag{"NS_UTIL::UtilCommon::InitOpticalBoardList", [](bool& is) {
                 UtilCommon::Destroy();  // the list grows
                 UtilCommon::Instance()->InitOpticalBoardList();
                 is = UtilCommon::Instance()->IsTiRoadmOpticalBoard(2970);
             }});
    add(Text{"NS_UTIL::UtilCommon::InitCTPId2TMFNameMap", [](std::string& name) {
                 UtilCommon::Instance()->InitCTPId2TMFNameMap();
                 UtilCommon::Instance()->InterfaceCTPId2TMFName(65524UL, name);
             }});
    add(Row<unsigned long>{"NS_UTIL::UtilCommon::InitTMFCTPName2ID", [](unsigned long& ctpId) {
                               static const std::string e11{"E11"};
                               UtilCommon::Instance()->InitTMFCTPName2ID();
                               UtilCommon::Instance()->InterfaceTMFCTPName2ID(e11, ctpId);
                           }});
}

void AddFbTypesAndFilter(Table& add) {
    using NS_UTIL::NtfFilter;
    using Flag = Row<bool>;
    using Text = Row<std::string>;
    add(Text{"NS_UTIL::GetFBTypeName", [](std::string& name) { name = NS_UTIL::GetFBTypeName(4258); }});
    add(Flag{"NS_UTIL::IsPTNAIDFBType", [](bool& is) { is = NS_UTIL::IsPTNAIDFBType(4258); }});
    add(Flag{"NS_UTIL::IsPortObjByFbType", [](bool& is) { is = NS_UTIL::IsPortObjByFbType(934, 3); }});
    add(Flag{"NS_UTIL::IsLogicalPortByType", [](bool& is) { is = NS_UTIL::IsLogicalPortByType(65536); }});
    add(Text{"NS_UTIL::GetDomainStrByID", [](std::string& name) { name = NS_UTIL::GetDomainStrByID(11); }});

    const auto rows = [&add](std::string name, auto get) {
        add(Row<std::size_t>{std::move(name), [get](std::size_t& size) { size = get().size(); }});
    };
    rows("NS_UTIL::GetFbTypeNameRows", &NS_UTIL::GetFbTypeNameRows);
    rows("NS_UTIL::GetPtnAidFbTypes", &NS_UTIL::GetPtnAidFbTypes);
    rows("NS_UTIL::GetPortObjectFbTypes", &NS_UTIL::GetPortObjectFbTypes);
    rows("NS_UTIL::GetDomainNameRows", &NS_UTIL::GetDomainNameRows);
    rows("NS_UTIL::GetFbTypeLevelRows", &NS_UTIL::GetFbTypeLevelRows);
    rows("NS_UTIL::GetLevelFbTypeRows", &NS_UTIL::GetLevelFbTypeRows);
    rows("NS_UTIL::GetBidirFbTypeRows", &NS_UTIL::GetBidirFbTypeRows);
    rows("NS_UTIL::GetCtpNameRows", &NS_UTIL::GetCtpNameRows);
    rows("NS_UTIL::GetClientRateRows", &NS_UTIL::GetClientRateRows);
    rows("NS_UTIL::GetOpticalBoards", &NS_UTIL::GetOpticalBoards);

    add(Flag{"NS_UTIL::NtfFilter::Instance", [](bool& is) { is = NtfFilter::Instance() != nullptr; }});
    add(Flag{"NS_UTIL::NtfFilter::Destroy", [](bool& is) {
                 is = NtfFilter::Instance() != nullptr;
                 NtfFilter::Destroy();
             }});
    add(Flag{"NS_UTIL::NtfFilter::IsFilteNtf", [](bool& is) { is = NtfFilter::Instance()->IsFilteNtf(5); }});
    add(Flag{"NS_UTIL::NtfFilter::IsFilteNtf", [](bool& is) {
                 NtfFilter::Destroy();  // makes each call load
                 is = NtfFilter::Instance()->IsFilteNtf(5);
             }});
}

void AddNeTypes(Table& add) {
    using NS_UTIL::DeviceDomainMgr;
    using Flag = Row<bool>;
    using Lists = std::map<std::string, std::list<int>>;
    static const std::list<int> unsorted{7, 5, 1911, 6, 5};
    for (const auto& [name, is] : std::initializer_list<std::pair<const char*, bool (*)(unsigned short)>>{
             {"IsPTN41", &NS_UTIL::IsPTN41},
             {"IsPTN31", &NS_UTIL::IsPTN31},
             {"IsPTN470", &NS_UTIL::IsPTN470},
             {"IsKLVByNEType", &NS_UTIL::IsKLVByNEType},
             {"IsRouteNE", &NS_UTIL::IsRouteNE},
             {"IsTransNE", &NS_UTIL::IsTransNE},
             {"IsAccessNE", &NS_UTIL::IsAccessNE},
             {"IsPTNClasssNE", &NS_UTIL::IsPTNClasssNE},
             {"IsPTNDMTNE", &NS_UTIL::IsPTNDMTNE},
             {"IsPTNNE", &NS_UTIL::IsPTNNE},
             {"IsMSTPNE", &NS_UTIL::IsMSTPNE},
             {"IsIPMSTPNE", &NS_UTIL::IsIPMSTPNE},
             {"IsIPKLVNE", &NS_UTIL::IsIPKLVNE},
             {"IsKLV600NE", &NS_UTIL::IsKLV600NE},
             {"IsOTNNE", &NS_UTIL::IsOTNNE},
             {"IsWDMNE", &NS_UTIL::IsWDMNE},
             {"IsOTN_NA", &NS_UTIL::IsOTN_NA},
             {"IsWDM_NA", &NS_UTIL::IsWDM_NA},
             {"IsNAWDMByNEType", &NS_UTIL::IsNAWDMByNEType},
             {"IsOTN4750NE", &NS_UTIL::IsOTN4750NE},
             {"IsBIGSLOTNE", &NS_UTIL::IsBIGSLOTNE},
             {"IsAccBitsNE", &NS_UTIL::IsAccBitsNE},
             {"IsMultiShelfTypeNE", &NS_UTIL::IsMultiShelfTypeNE},
             {"IsIPServiceNE", &NS_UTIL::IsIPServiceNE},
             {"IsKLVNE", &NS_UTIL::IsKLVNE}}) {
        add(Flag{"NS_UTIL::" + std::string(name), [ask = is](bool& answer) { answer = ask(1911); }});
    }
    add(Flag{"NS_UTIL::IsTransMultiSubShelfNE", [](bool& is) { is = NS_UTIL::IsTransMultiSubShelfNE(12, 1911); }});

    add(Flag{"NS_UTIL::DeviceDomainMgr::Instance", [](bool& is) { is = DeviceDomainMgr::Instance() != nullptr; }});
    add(Flag{"NS_UTIL::DeviceDomainMgr::Destroy", [](bool& is) {
                 is = DeviceDomainMgr::Instance() != nullptr;
                 DeviceDomainMgr::Destroy();
             }});
    // The rows of storing and of reading each do both: store a list, then read all.
    const auto storeAndReadNeTypeLists = [](Lists& lists) {
        DeviceDomainMgr::Instance()->AddDomainDevTypelistCache(LONG_KEY, unsorted);
        DeviceDomainMgr::Instance()->GetDomainDevTypelistCache(lists);
    };
    const auto storeAndReadEquipmentTypes = [](Lists& lists) {
        DeviceDomainMgr::Instance()->AddDomainEqtCache(LONG_KEY, unsorted);
        DeviceDomainMgr::Instance()->GetDomainEqtCache(lists);
    };
    add(Row<Lists>{"NS_UTIL::DeviceDomainMgr::AddDomainDevTypelistCache", storeAndReadNeTypeLists});
    add(Row<Lists>{"NS_UTIL::DeviceDomainMgr::GetDomainDevTypelistCache", storeAndReadNeTypeLists});
    add(Row<Lists>{"NS_UTIL::DeviceDomainMgr::AddDomainEqtCache", storeAndReadEquipmentTypes});
    add(Row<Lists>{"NS_UTIL::DeviceDomainMgr::GetDomainEqtCache", storeAndReadEquipmentTypes});
    add(Flag{"NS_UTIL::DeviceDomainMgr::isInDomainDevTypelistCache",
             [](bool& is) { is = DeviceDomainMgr::Instance()->isInDomainDevTypelistCache(LONG_KEY, 1911); }});
    add(Flag{"NS_UTIL::DeviceDomainMgr::isInDomainEqtCache",
             [](bool& is) { is = DeviceDomainMgr::Instance()->isInDomainEqtCache(LONG_KEY, 1911); }});
}

void AddTheFrame(Table& add) {
    using NS_UTIL::InterfaceNotExistException;
    using NS_UTIL::ProcessException;
    using Number = Row<std::uint32_t>;
    add(Number{"NS_UTIL::ProcessException::ProcessException",
               [](std::uint32_t& code) { code = ProcessException().m_code; }});
    add(Row<std::string>{"NS_UTIL::ProcessException::ProcessException", [](std::string& text) {
                             ProcessException source;
                             source.m_text1.exceptions(std::ios::badbit);
                             source.m_text1 << LONG_TEXT;
                             const ProcessException copy(source);
                             text = copy.m_text1.str();
                         }});
    add(Number{"NS_UTIL::InterfaceNotExistException::InterfaceNotExistException",
               [](std::uint32_t& code) { code = InterfaceNotExistException().m_code; }});
    add(Number{"NS_UTIL::InterfaceNotExistException::InterfaceNotExistException", [](std::uint32_t& code) {
                   ProcessException cause;
                   cause.m_code = 7;
                   code = InterfaceNotExistException(cause).m_code;
               }});
    add(Number{"NS_UTIL::InterfaceNotExistException::InterfaceNotExistException", [](std::uint32_t& code) {
                   InterfaceNotExistException source;
                   source.m_code = 7;
                   code = InterfaceNotExistException(source).m_code;
               }});
}

// ---- Typed calls ----------------------------------------------------------------------------------------------------

// Knows everything and allocates nothing.
class AllKnown final : public NS_UTIL::Surroundings {
public:
    [[nodiscard]] int CarrierProfile() const override { return 1; }
    [[nodiscard]] unsigned short NEType(int neId) const override { return neId % 2 != 0 ? 1911 : 1; }
    [[nodiscard]] bool SpellsOutSubSlot(int neId) const override { return neId % 2 != 0; }
    [[nodiscard]] bool IsMdNumberOmitted(int neId) const override { return neId % 2 != 0; }
    [[nodiscard]] bool IsMaNumberOmitted(int neId) const override { return neId % 2 == 0; }
};

const AllKnown ALL_KNOWN;

template <class Kind>
std::array<NS_UTIL::NS_FDN::RecordOf<Kind>, LONG_IDENTIFIERS.size() + 1> ReadLongIdentifiers() {
    std::array<NS_UTIL::NS_FDN::RecordOf<Kind>, LONG_IDENTIFIERS.size() + 1> records{};
    NS_UTIL::NS_FDN::ReadInto<Kind>(END_POINT, records.back(), ALL_KNOWN);
    for (std::size_t at = 0; at < LONG_IDENTIFIERS.size(); ++at) {
        NS_UTIL::NS_FDN::ReadInto<Kind>(LONG_IDENTIFIERS[at], records[at], ALL_KNOWN);
    }
    return records;
}

template <class Kind>
void AddReading(Table& add, const std::string& kind) {
    using Answer = decltype(ReadLongIdentifiers<Kind>());
    add(Row<Answer>{"NS_UTIL::NS_FDN::Conversion<" + kind + ">::Read",
                    [](Answer& records) { records = ReadLongIdentifiers<Kind>(); }});
}

template <class Kind>
void AddWriting(Table& add, const std::string& kind) {
    using namespace NS_UTIL::NS_FDN;
    using Answer = std::array<std::string, LONG_IDENTIFIERS.size() + 1>;
    const std::string scope = "NS_UTIL::NS_FDN::Conversion<" + kind + ">::";
    add(Row<Answer>{scope + "Write", [](Answer& fdns) {
                        const auto records = ReadLongIdentifiers<Kind>();
                        for (std::size_t at = 0; at < records.size(); ++at) {
                            WriteInto<Kind>(records[at], fdns[at], ALL_KNOWN);
                        }
                    }});
    if constexpr (requires { &Conversion<Kind>::WriteAs; }) {
        add(Row<Answer>{scope + "WriteAs", [](Answer& fdns) {
                            const auto records = ReadLongIdentifiers<Kind>();
                            for (std::size_t at = 0; at < records.size(); ++at) {
                                WriteInto<AsLogical<Kind>>(records[at], fdns[at], ALL_KNOWN);
                            }
                        }});
    }
}

void AddTypedCalls(Table& add) {
    ForEachConversion([&add]<class Kind, bool hasRead, bool hasWrite>(const std::string& kind) {
        if constexpr (hasRead) {
            AddReading<Kind>(add, kind);
        }
        if constexpr (hasWrite) {
            AddWriting<Kind>(add, kind);
        }
    });
}

// The code of the exception with which `ask` says that nothing is known.
template <class Ask>
Row<std::uint32_t> UnknownRow(const std::string& name, Ask ask) {
    return {"NS_UTIL::Surroundings::" + name, [ask](std::uint32_t& code) {
                try {
                    ask(NS_UTIL::Surroundings());
                } catch (const NS_UTIL::InterfaceNotExistException& missing) {
                    code = missing.m_code;
                }
            }};
}

void AddSurroundings(Table& add) {
    using NS_UTIL::Surroundings;
    add(Row<int>{"NS_UTIL::Surroundings::OfSystem",
                 [](int& profile) { profile = Surroundings::OfSystem().CarrierProfile(); }});
    add(Row<int>{"NS_UTIL::Surroundings::CarrierProfile",
                 [](int& profile) { profile = Surroundings().CarrierProfile(); }});
    add(Row<int>{"NS_UTIL::Surroundings::AgentCarrierProfile",
                 [](int& profile) { profile = Surroundings().AgentCarrierProfile(); }});
    add(UnknownRow("NEType", [](const Surroundings& known) { static_cast<void>(known.NEType(1)); }));
    add(UnknownRow("SpellsOutSubSlot",
                   [](const Surroundings& known) { static_cast<void>(known.SpellsOutSubSlot(1)); }));
    add(UnknownRow("IsMdNumberOmitted",
                   [](const Surroundings& known) { static_cast<void>(known.IsMdNumberOmitted(1)); }));
    add(UnknownRow("IsMaNumberOmitted",
                   [](const Surroundings& known) { static_cast<void>(known.IsMaNumberOmitted(1)); }));
}

void AddServices(Table& add) {
    using namespace NS_BUNDLEMGR1;
    using Flag = Row<bool>;
    static ServiceInterface service;
    add(Flag{"NS_BUNDLEMGR1::BundleMgr::Instance", [](bool& is) { is = BundleMgr::Instance() != nullptr; }});
    add(Flag{"NS_BUNDLEMGR1::BundleMgr::RegisterService", [](bool& is) {
                 BundleMgr::Instance()->RegisterService(LONG_KEY, &service);
                 is = BundleMgr::Instance()->UnregisterService(LONG_KEY);
             }});
    // If memory runs out for a replacement, the old service stays registered, and taking it back needs no memory.
    static ServiceInterface other;
    add(Flag{"NS_BUNDLEMGR1::BundleMgr::RegisterService", [](bool& is) {
                 const auto isTakenBack = [](const ServiceInterface& expected) noexcept {
                     return FindService<ServiceInterface>(LONG_KEY) == &expected &&
                            BundleMgr::Instance()->UnregisterService(LONG_KEY) &&
                            FindService<ServiceInterface>(LONG_KEY) == nullptr;
                 };
                 BundleMgr::Instance()->RegisterService(LONG_KEY, &service);
                 try {
                     BundleMgr::Instance()->RegisterService(LONG_KEY, &other);
                 } catch (const std::bad_alloc&) {
                     is = isTakenBack(service);
                     if (is) {
                         throw;
                     }
                     return;
                 }
                 is = isTakenBack(other);
             }});
    add(Flag{"NS_BUNDLEMGR1::BundleMgr::UnregisterService",
             [](bool& is) { is = BundleMgr::Instance()->UnregisterService(LONG_KEY); }});
    add(Flag{"NS_BUNDLEMGR1::CheckIFBuf", [](bool& is) { is = CheckIFBuf(LONG_KEY) != nullptr; }});
    add(Flag{"NS_BUNDLEMGR1::InterfaceBuffer::First", [](bool& is) {
                 ReadPin pin;
                 InterfaceBuffer::Entry entry;
                 is = CheckIFBuf(LONG_KEY)->First(pin, entry);
             }});
    add(Flag{"NS_BUNDLEMGR1::InterfaceBuffer::Append", [](bool& is) {
                 ServiceObjectBase object(LONG_KEY, &service);
                 InterfaceBuffer buffer(LONG_KEY);
                 buffer.Append({&object, &service});
                 ReadPin pin;
                 InterfaceBuffer::Entry entry;
                 is = buffer.First(pin, entry);
             }});
    add(Flag{"NS_BUNDLEMGR1::InterfaceBuffer::Forget", [](bool& is) {
                 InterfaceBuffer buffer(LONG_KEY);
                 buffer.SetSearched();
                 buffer.Forget();
                 ReadPin pin;
                 InterfaceBuffer::Entry entry;
                 is = buffer.First(pin, entry);
             }});
    add(Flag{"NS_BUNDLEMGR1::NULLServiceInterface::Release", [](bool& is) {
                 auto* const nobody = new NULLServiceInterface;
                 nobody->Release();
                 is = true;
             }});
    add(Row<std::string>{"NS_BUNDLEMGR1::NULLServiceInterface::GetName", [](std::string& name) {
                             NULLServiceInterface nobody;
                             name = nobody.GetName();
                         }});
    add(Row<std::string>{"NS_BUNDLEMGR1::ServiceInterface::GetName",
                         [](std::string& name) { name = service.GetName(); }});
    add(Flag{"NS_BUNDLEMGR1::ServiceInterface::GetSelf", [](bool& is) { is = service.GetSelf() == &service; }});
    add(Row<int>{"NS_BUNDLEMGR1::ServiceInterface::GetState", [](int& state) { state = service.GetState(); }});
    add(Flag{"NS_BUNDLEMGR1::ServiceInterface::Release", [](bool& is) {
                 service.Release();
                 is = true;
             }});
    add(Flag{"NS_BUNDLEMGR1::ServiceObjectBase::ServiceObjectBase", [](bool& is) {
                 ServiceObjectBase object(LONG_KEY, &service);
                 is = object.GetInterfaces().at(LONG_KEY) == &object;
             }});
    add(Flag{"NS_BUNDLEMGR1::ServiceObjectBase::GetMemory", [](bool& is) {
                 ServiceObjectBase object(LONG_KEY, &service);
                 is = object.GetMemory(&is) != nullptr;
             }});
    static constexpr auto pinDeeply = [](auto pinDeeper, int depth) -> void {
        ReadPin pin;
        if (depth > 0) {
            pinDeeper(pinDeeper, depth - 1);
        }
    };
    add(Flag{"NS_BUNDLEMGR1::ReadPin::ReadPin", [](bool& is) {
                 pinDeeply(pinDeeply, 30);
                 is = true;
             }});
    add(Flag{"NS_BUNDLEMGR1::ReadPin::IsPinned", [](bool& is) {
                 ReadPin pin;
                 pin.Pin(&is);
                 is = ReadPin::IsPinned(&is);
             }});
    add(Flag{"NS_BUNDLEMGR1::ReadPin::WaitUntilReleased", [](bool& is) {
                 ReadPin pin;
                 pin.Pin(&is);
                 ReadPin::WaitUntilReleased(&is);
                 is = true;
             }});
}

void AddConfigItems(Table& add) {
    using NS_BUNDLEMGR1::ConfigItem;
    using NS_BUNDLEMGR1::CorbaConfigItems;
    using Flag = Row<bool>;
    static const std::string profile{"Telvandaire"};
    add(Flag{"NS_BUNDLEMGR1::CorbaConfigItems::Instance",
             [](bool& is) { is = CorbaConfigItems::Instance() != nullptr; }});
    add(Row<int>{"NS_BUNDLEMGR1::CorbaConfigItems::GetIntItemInfo",
                 [](int& value) { CorbaConfigItems::Instance()->GetIntItemInfo(profile, value); }});
    add(Row<std::string>{"NS_BUNDLEMGR1::CorbaConfigItems::GetStrItemInfo",
                         [](std::string& value) { CorbaConfigItems::Instance()->GetStrItemInfo(LONG_KEY, value); }});
    add(Flag{"NS_BUNDLEMGR1::CorbaConfigItems::HasItem",
             [](bool& is) { is = CorbaConfigItems::Instance()->HasItem(LONG_KEY); }});
    add(Row<std::string>{"NS_BUNDLEMGR1::CorbaConfigItems::SetItem", [](std::string& value) {
                             static const std::string key = LONG_KEY + " of its own";
                             CorbaConfigItems::Instance()->SetItem(key, LONG_TEXT);
                             CorbaConfigItems::Instance()->GetStrItemInfo(key, value);
                         }});
    add(Flag{"NS_BUNDLEMGR1::CorbaConfigItems::RemoveItem", [](bool& is) {
                 int value = 0;
                 CorbaConfigItems::Instance()->RemoveItem(profile);
                 is = CorbaConfigItems::Instance()->GetIntItemInfo(profile, value);
             }});
    add(Flag{"NS_BUNDLEMGR1::CorbaConfigItems::Clear", [](bool& is) {
                 int value = 0;
                 CorbaConfigItems::Instance()->SetItem(profile, "1");
                 CorbaConfigItems::Instance()->Clear();
                 is = CorbaConfigItems::Instance()->GetIntItemInfo(profile, value);
             }});
    add(Flag{"NS_BUNDLEMGR1::CorbaConfigItems::GetItem", [](bool& is) {
                 const ConfigItem& item = CorbaConfigItems::Instance()->GetItem(LONG_TEXT);
                 is = &item == &CorbaConfigItems::Instance()->GetItem(LONG_TEXT);
             }});
}

void AddTexts(Table& add) {
    using NS_UTIL::Parser;
    using NS_UTIL::SelfUtilCommon;
    using TextMap = std::map<std::string, std::string>;
    using Text = Row<std::string>;
    using Pieces = Row<std::vector<std::string>>;
    static const std::string bar{"|"};
    static const std::string comma{","};
    static const std::string equals{"="};
    static const std::string seven{"7"};
    add(Row<bool>{"NS_UTIL::SelfUtilCommon::Instance", [](bool& is) { is = SelfUtilCommon::Instance() != nullptr; }});
    add(Row<bool>{"NS_UTIL::SelfUtilCommon::IsSupportCfgItem",
                  [](bool& is) { is = SelfUtilCommon::Instance()->IsSupportCfgItem(LONG_KEY); }});
    add(Text{"NS_UTIL::SelfUtilCommon::GetSupportCfgItem",
             [](std::string& value) { SelfUtilCommon::Instance()->GetSupportCfgItem(LONG_KEY, value); }});
    add(Row<TextMap>{"NS_UTIL::SelfUtilCommon::GetSpliteFDNData",
                     [](TextMap& out) { SelfUtilCommon::Instance()->GetSpliteFDNData(out, LONG_ITEMS, comma); }});
    add(Text{"NS_UTIL::SelfUtilCommon::GetDataFromMap",
             [](std::string& value) { SelfUtilCommon::Instance()->GetDataFromMap(TEXTS, LONG_KEY, value); }});
    add(Text{"NS_UTIL::SelfUtilCommon::GetDataFromMap",
             [](std::string& value) { SelfUtilCommon::Instance()->GetDataFromMap(LINES, 7, value); }});
    add(Row<int>{"NS_UTIL::SelfUtilCommon::GetIntegerValueByName",
                 [](int& value) { SelfUtilCommon::Instance()->GetIntegerValueByName(TEXTS, seven, value); }});
    add(Text{"NS_UTIL::SelfUtilCommon::upperStr",
             [](std::string& upper) { upper = SelfUtilCommon::Instance()->upperStr(LONG_TEXT); }});
    add(Pieces{"NS_UTIL::Parser::SplitStrByTag",
               [](std::vector<std::string>& out) { Parser::SplitStrByTag(LONG_PIECES, bar, out); }});
    add(Row<std::pair<std::string, std::string>>{
        "NS_UTIL::Parser::ParseItemNVByTag", [](std::pair<std::string, std::string>& item) {
            Parser::ParseItemNVByTag(LONG_ITEMS, item.first, item.second, equals);
        }});
    add(Pieces{"NS_UTIL::SplitStringByTag", [](std::vector<std::string>& out) {
                   NS_UTIL::SplitStringByTag(LONG_PIECES, out, '|', std::bitset<8>{});
               }});
    add(Text{"NS_UTIL::Int2Str", [](std::string& text) { text = NS_UTIL::Int2Str(-2147483647); }});
}

}  // namespace

std::vector<Operation> AllOperations() {
    Table add;
    AddConversions(add);
    AddTypedCalls(add);
    AddSurroundings(add);
    AddOthersOfResIDUtil(add);
    AddUtilCommon(add);
    AddFbTypesAndFilter(add);
    AddNeTypes(add);
    AddTheFrame(add);
    AddServices(add);
    AddConfigItems(add);
    AddTexts(add);
    return add.Take();
}

}  // namespace NS_TEST
