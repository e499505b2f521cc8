#include "kinds.h"

#include <algorithm>
#include <array>
#include <functional>
#include <initializer_list>
#include <type_traits>
#include <utility>

#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/resIDUtil.h>

#include "conversions.h"
#include "records.h"

namespace NS_KXDU {

using NS_UTIL::ResIDUtil;
using NS_UTIL::NS_FDN::LevelFinder;
using NS_UTIL::NS_FDN::PackTag;
using NS_UTIL::NS_FDN::SubValues;
namespace TAG = NS_UTIL::NS_FDN::TAG;

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

using PortLevels = LevelFinder<TAG::FR, TAG::S, TAG::SS, PackTag("CP"), TAG::LP>;

// Ports that only the writer that is told the NE type writes: a slot without ",CP=-1", or a logical port that stands in
// a shelf or sub-slot but in no slot.
bool IsWrittenByNEType(std::string_view fdn) {
    const PortLevels levels(fdn);
    if (levels.Has<TAG::S>()) {
        return !levels.Has<PackTag("CP")>();
    }
    return levels.Has<TAG::SS>() || (levels.Has<TAG::LP>() && levels.Has<TAG::FR>());
}

bool IsWrittenByNETypeWithSubSlot(std::string_view fdn) {
    return LevelFinder<TAG::SS>(fdn).Value<TAG::SS>() == "-1" && IsWrittenByNEType(fdn);
}

// A sub-interface that the label of a termination point cannot hold: on a logical port that is not identified by its
// name, or whose name has a "." already.
bool IsOnNumberedPort(std::string_view fdn) {
    const LevelFinder<TAG::LP> levels(fdn);
    const SubValues<4> port(levels.Value<TAG::LP>());
    const bool isNamed = port.texts[0].empty() && !port.texts[3].empty();
    return port.count == 4 && (!isNamed || port.texts[3].find('.') != std::string_view::npos);
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

using AddRow = std::function<void(Row row)>;

void AddEquipment(const AddRow& add) {
    using namespace NS_DOMAIN;
    add(Identifier<OSIndex>({"OS"}, "OSIndex", ResIDUtil::ResID2OSIndex, ResIDUtil::OSIndex2ResID));
    add(Identifier<ONEIndex>({"ONE"}, "ONEIndex", ResIDUtil::ResID2ONEIndex, ResIDUtil::ONEIndex2ResID));
    add(Identifier<ContainedNE>({"NE"}, "NEID", ReadContainedNE, WriteContainedNE, IsContained));
    add(Identifier<NEIndex>({"NE"}, "NEIndex", ResIDUtil::ResID2NEIndex, ResIDUtil::NEIndex2ResID));
    add(Identifier<ShelfIndex>({"FR"}, "ShelfIndex", ResIDUtil::ResID2ShelfIndex, ResIDUtil::ShelfIndex2ResID));
    add(Identifier<SlotIndex>({"S"}, "SlotIndex", ResIDUtil::ResID2SlotIndex, ResIDUtil::SlotIndex2ResID));
    add(Identifier<SlotIndex>({"SS"}, "SubSlotIndex", ResIDUtil::ResID2SubSlotIndex, ResIDUtil::SubSlotIndex2ResID));
    add(Identifier<CardIndex>({"CP", "SC"}, "CardIndex", ResIDUtil::ResID2CardIndex, ResIDUtil::CardIndex2ResID));
    add(Identifier<PortIndex>({"PP"}, "PortIndex:NEType1911", ResIDUtil::ResID2PortIndex, WritePortWithSubSlot,
                              IsWrittenByNETypeWithSubSlot));
    add(Identifier<PortIndex>({"PP", "LP"}, "PortIndex:NEType", ResIDUtil::ResID2PortIndex, WritePortByNEType,
                              IsWrittenByNEType));
    add(Identifier<PortIndex>({"PP", "LP"}, "PortIndex", ResIDUtil::ResID2PortIndex, WritePort));
    add(Identifier<PortIndex>({}, "PortIndex:LoopBack", ResIDUtil::ResID2LoopBackPortIndex, WritePort));
    add(Identifier<CtpKey_T>({"AP", "VR", "CHANNELSET"}, "CtpKey_T", ResIDUtil::ResID2APIndex, WriteAccessPoint));
    add(Identifier<CtpKey_T>({"SUBIF"}, "CtpKey_T:SUBIF", ResIDUtil::ResID2PortIndex, WriteSubInterface,
                             IsOnNumberedPort));
    add(Identifier<TPIndex>({"SUBIF", "VC4", "VC12"}, "TPIndex", ReadTerminationPoint, ResIDUtil::TPIndex2ResID));
}

void AddServices(const AddRow& add) {
    using namespace NS_DOMAIN;
    add(Identifier<ContainedGroup>({"VEGROUP"}, "GroupID", ReadGroup, WriteGroup));
    add(Identifier<PWIndex>({"PW"}, "PWIndex", ReadPseudoWire, ResIDUtil::PWIndex2ResID));
    add(Identifier<PWSwitchIndex>({"PWSW"}, "PWSwitchIndex", ResIDUtil::ResID2PWSwitchIndex, WriteWholeText));
    // LSP and layer-3 VPN have no reader of their own: of them, as of any service, the NE and the text are kept.
    add(Identifier<ServiceIndex>({"PWE3", "NETH", "VSI", "VRF", "LSP", "L3VPN"}, "ServiceIndex",
                                 ResIDUtil::ResID2SVCIndex, WriteWholeText));
    add(Identifier<TunnelIndex>({"TUNNEL"}, "TunnelIndex", ResIDUtil::ResID2TunnelIndex, WriteWholeText));
    add(Identifier<TDIndex>({"ATMTD"}, "TDIndex", ResIDUtil::ResID2TDIndex, WriteTrafficDescriptor));
    add(Identifier<Contained<VPNTrailIndex>>({"PWE3TRAIL", "VPLS"}, "VPNTrailIndex", ReadTrail, WriteTrail));
    add(Identifier<Contained<TunnelTrailIndex>>({"TUNNELTRAIL"}, "TunnelTrailIndex", ReadTrail, WriteTrail));
    add(Identifier<Contained<PWTrailIndex>>({"PWTRAIL"}, "PWTrailIndex", ReadTrail, WriteTrail));
    add(Identifier<Contained<TNPIndex_T>>({"TUNNELPGTRAIL"}, "TNPIndex_T", ReadTrail, WriteTrail));
}

void AddOam(const AddRow& add) {
    using namespace NS_DOMAIN;
    add(Identifier<MDIndex>({"MD"}, "MDIndex", ResIDUtil::ResID2MDIndex, ResIDUtil::MDIndex2ResID));
    add(Identifier<MAIndex>({"MA"}, "MAIndex", ResIDUtil::ResID2MAIndex, ResIDUtil::MAIndex2ResID));
    add(Identifier<MEPIndex>({"MEP"}, "MEPIndex", ReadEndPoint, ResIDUtil::MepIndex2ResID));
    add(Identifier<MEPIndex>({"RMEP"}, "MEPIndex:RMEP", ReadEndPoint, ResIDUtil::RmepIndex2ResID));
    add(Identifier<MIPIndex>({"MIP"}, "MIPIndex", ReadIntermediatePoint, ResIDUtil::MIPIndex2ResID));
}

// One row for each kind. Of several rows with the same last level the first that applies counts.
std::vector<Row> MakeRows() {
    std::vector<Row> rows;
    const AddRow add = [&](Row row) { rows.push_back(std::move(row)); };
    AddEquipment(add);
    AddServices(add);
    AddOam(add);
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

}  // namespace NS_KXDU
