#include "catalogue/kinds.h"

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <type_traits>
#include <utility>

#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>
#include <kx_domain_util/resIDUtil.h>

#include "catalogue/conversions.h"
#include "catalogue/records.h"

namespace NS_KX {

using NS_UTIL::ResIDUtil;
using NS_UTIL::NS_FDN::LevelFinder;
using NS_UTIL::NS_FDN::SubValues;

namespace {

template <class Visitor, class Value>
void VisitField(Visitor& visitor, std::string_view name, Value& value) {
    using Plain = std::remove_const_t<Value>;
    if constexpr (std::is_same_v<Plain, bool>) {
        visitor.Flag(name, value);
    } else if constexpr (std::is_integral_v<Plain>) {
        visitor.Number(name, value);
    } else if constexpr (std::is_same_v<Plain, std::string>) {
        visitor.Text(name, value);
    } else {
        visitor.BeginNested(name);
        ForEachField(value, [&](std::string_view inner, auto& field) { VisitField(visitor, inner, field); });
        visitor.EndNested();
    }
}

template <class Visitor, class Record>
void VisitRecord(Visitor& visitor, Record& record) {
    ForEachField(record, [&](std::string_view name, auto& value) { VisitField(visitor, name, value); });
}

template <class Record>
using Reader = void (*)(const std::string&, Record&);
template <class Record>
using Writer = void (*)(const Record&, std::string&);

template <class Record>
class KindOf : public Kind {
public:
    constexpr KindOf(std::string_view type, Reader<Record> read, Writer<Record> write)
        : Kind(type), m_read(read), m_write(write) {}

    void Decode(const std::string& fdn, RecordSink& sink) const override {
        Record record;
        m_read(fdn, record);
        VisitRecord(sink, std::as_const(record));
    }

    void Encode(RecordSource& source, std::string& fdn) const override {
        Record record;
        VisitRecord(source, record);
        source.End();
        m_write(record, fdn);
    }

    void Rewrite(const std::string& fdn, std::string& canonical) const override {
        Record record;
        m_read(fdn, record);
        m_write(record, canonical);
    }

    void Describe(RecordSink& sink) const override {
        const Record record;
        VisitRecord(sink, record);
    }

private:
    Reader<Record> m_read;
    Writer<Record> m_write;
};

// ---- Which of several kinds of the same last level ------------------------------------------------------------------

bool Always(std::string_view) {
    return true;
}

bool IsContained(std::string_view fdn) {
    return fdn.starts_with("ONE=");
}

using PortLevels = LevelFinder<"FR", "S", "SS", "CP", "LP">;

// Ports that only the writer that is told the NE type writes: a slot without ",CP=-1", or a logical port that stands in
// a shelf or sub-slot but in no slot.
bool IsWrittenByNEType(std::string_view fdn) {
    const PortLevels levels(fdn);
    if (levels.Has<"S">()) {
        return !levels.Has<"CP">();
    }
    return levels.Has<"SS">() || (levels.Has<"LP">() && levels.Has<"FR">());
}

bool IsWrittenByNETypeWithSubSlot(std::string_view fdn) {
    return LevelFinder<"SS">(fdn).Value<"SS">() == "-1" && IsWrittenByNEType(fdn);
}

// A sub-interface that the label of a termination point cannot hold: on a logical port that is not identified by its
// name, or whose name has a "." already.
bool IsOnNumberedPort(std::string_view fdn) {
    const LevelFinder<"LP"> levels(fdn);
    const SubValues<4> port(levels.Value<"LP">());
    const bool isNamed = port[0].empty() && !port[3].empty();
    return port.Count() == 4 && (!isNamed || port[3].find('.') != std::string_view::npos);
}

// ---- The table ------------------------------------------------------------------------------------------------------

struct Row {
    std::vector<std::string_view> mocs;  ///< none: reached by its type name only
    bool (*applies)(std::string_view fdn);
    std::unique_ptr<const Kind> kind;
};

template <class Record>
Row Identifier(std::initializer_list<std::string_view> mocs, std::string_view type, Reader<Record> read,
               Writer<Record> write, bool (*applies)(std::string_view fdn) = Always) {
    return {mocs, applies, std::make_unique<KindOf<Record>>(type, read, write)};
}

void AddEquipment(std::vector<Row>& rows) {
    using namespace NS_DOMAIN;
    rows.push_back(Identifier<OSIndex>({"OS"}, "OSIndex", ResIDUtil::ResID2OSIndex, ResIDUtil::OSIndex2ResID));
    rows.push_back(Identifier<ONEIndex>({"ONE"}, "ONEIndex", ResIDUtil::ResID2ONEIndex, ResIDUtil::ONEIndex2ResID));
    rows.push_back(Identifier<ContainedNE>({"NE"}, "NEID", ReadContainedNE, WriteContainedNE, IsContained));
    rows.push_back(Identifier<NEIndex>({"NE"}, "NEIndex", ResIDUtil::ResID2NEIndex, ResIDUtil::NEIndex2ResID));
    rows.push_back(
        Identifier<ShelfIndex>({"FR"}, "ShelfIndex", ResIDUtil::ResID2ShelfIndex, ResIDUtil::ShelfIndex2ResID));
    rows.push_back(Identifier<SlotIndex>({"S"}, "SlotIndex", ResIDUtil::ResID2SlotIndex, ResIDUtil::SlotIndex2ResID));
    rows.push_back(
        Identifier<SlotIndex>({"SS"}, "SubSlotIndex", ResIDUtil::ResID2SubSlotIndex, ResIDUtil::SubSlotIndex2ResID));
    rows.push_back(
        Identifier<CardIndex>({"CP", "SC"}, "CardIndex", ResIDUtil::ResID2CardIndex, ResIDUtil::CardIndex2ResID));
    rows.push_back(Identifier<PortIndex>({"PP"}, "PortIndex:NEType1911", ResIDUtil::ResID2PortIndex,
                                         WritePortWithSubSlot, IsWrittenByNETypeWithSubSlot));
    rows.push_back(Identifier<PortIndex>({"PP", "LP"}, "PortIndex:NEType", ResIDUtil::ResID2PortIndex,
                                         WritePortByNEType, IsWrittenByNEType));
    rows.push_back(Identifier<PortIndex>({"PP", "LP"}, "PortIndex", ResIDUtil::ResID2PortIndex, WritePort));
    rows.push_back(Identifier<PortIndex>({}, "PortIndex:LoopBack", ResIDUtil::ResID2LoopBackPortIndex, WritePort));
    rows.push_back(
        Identifier<CtpKey_T>({"AP", "VR", "CHANNELSET"}, "CtpKey_T", ResIDUtil::ResID2APIndex, WriteAccessPoint));
    rows.push_back(Identifier<CtpKey_T>({"SUBIF"}, "CtpKey_T:SUBIF", ResIDUtil::ResID2PortIndex, WriteSubInterface,
                                        IsOnNumberedPort));
    rows.push_back(
        Identifier<TPIndex>({"SUBIF", "VC4", "VC12"}, "TPIndex", ReadTerminationPoint, ResIDUtil::TPIndex2ResID));
}

void AddServices(std::vector<Row>& rows) {
    using namespace NS_DOMAIN;
    rows.push_back(Identifier<ContainedGroup>({"VEGROUP"}, "GroupID", ReadGroup, WriteGroup));
    rows.push_back(Identifier<PWIndex>({"PW"}, "PWIndex", ReadPseudoWire, ResIDUtil::PWIndex2ResID));
    rows.push_back(
        Identifier<PWSwitchIndex>({"PWSW"}, "PWSwitchIndex", ResIDUtil::ResID2PWSwitchIndex, WriteWholeText));
    // LSP and layer-3 VPN have no reader of their own: of them, as of any service, the NE and the text are kept.
    rows.push_back(Identifier<ServiceIndex>({"PWE3", "NETH", "VSI", "VRF", "LSP", "L3VPN"}, "ServiceIndex",
                                            ResIDUtil::ResID2SVCIndex, WriteWholeText));
    rows.push_back(Identifier<TunnelIndex>({"TUNNEL"}, "TunnelIndex", ResIDUtil::ResID2TunnelIndex, WriteWholeText));
    rows.push_back(Identifier<TDIndex>({"ATMTD"}, "TDIndex", ResIDUtil::ResID2TDIndex, WriteTrafficDescriptor));
    rows.push_back(Identifier<Contained<VPNTrailIndex>>({"PWE3TRAIL", "VPLS"}, "VPNTrailIndex", ReadTrail, WriteTrail));
    rows.push_back(Identifier<Contained<TunnelTrailIndex>>({"TUNNELTRAIL"}, "TunnelTrailIndex", ReadTrail, WriteTrail));
    rows.push_back(Identifier<Contained<PWTrailIndex>>({"PWTRAIL"}, "PWTrailIndex", ReadTrail, WriteTrail));
    rows.push_back(Identifier<Contained<TNPIndex_T>>({"TUNNELPGTRAIL"}, "TNPIndex_T", ReadTrail, WriteTrail));
}

void AddOam(std::vector<Row>& rows) {
    using namespace NS_DOMAIN;
    rows.push_back(Identifier<MDIndex>({"MD"}, "MDIndex", ResIDUtil::ResID2MDIndex, ResIDUtil::MDIndex2ResID));
    rows.push_back(Identifier<MAIndex>({"MA"}, "MAIndex", ResIDUtil::ResID2MAIndex, ResIDUtil::MAIndex2ResID));
    rows.push_back(Identifier<MEPIndex>({"MEP"}, "MEPIndex", ReadEndPoint, ResIDUtil::MepIndex2ResID));
    rows.push_back(Identifier<MEPIndex>({"RMEP"}, "MEPIndex:RMEP", ReadEndPoint, ResIDUtil::RmepIndex2ResID));
    rows.push_back(Identifier<MIPIndex>({"MIP"}, "MIPIndex", ReadIntermediatePoint, ResIDUtil::MIPIndex2ResID));
}

// One row for each kind. Of several rows with the same last level the first that applies counts.
std::vector<Row> MakeRows() {
    std::vector<Row> rows;
    AddEquipment(rows);
    AddServices(rows);
    AddOam(rows);
    return rows;
}

const std::vector<Row>& Rows() {
    static const std::vector<Row> rows = MakeRows();
    return rows;
}

}  // namespace

std::string_view MocOf(std::string_view fdn) {
    const auto comma = fdn.rfind(',');
    const std::string_view level = comma == std::string_view::npos ? fdn : fdn.substr(comma + 1);
    return level.substr(0, level.find('='));
}

const Kind* FindKind(std::string_view fdn) {
    const std::string_view moc = MocOf(fdn);
    for (const Row& row : Rows()) {
        if (std::find(row.mocs.begin(), row.mocs.end(), moc) != row.mocs.end() && row.applies(fdn)) {
            return row.kind.get();
        }
    }
    return nullptr;
}

const Kind* FindKindByType(std::string_view type) {
    for (const Row& row : Rows()) {
        if (row.kind->Type() == type) {
            return row.kind.get();
        }
    }
    return nullptr;
}

std::vector<const Kind*> AllKinds() {
    std::vector<const Kind*> kinds;
    for (const Row& row : Rows()) {
        kinds.push_back(row.kind.get());
    }
    return kinds;
}

}  // namespace NS_KX
