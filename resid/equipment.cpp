#include <string>
#include <string_view>

#include <kx_domain_util/fdn.h>
#include <kx_domain_util/levelfinder.h>
#include <kx_domain_util/netype.h>
#include <kx_domain_util/resIDUtil.h>

#include "frame/systemsurroundings.h"
#include "resid/fdnwriter.h"

namespace NS_UTIL {

using NS_DOMAIN::CardIndex;
using NS_DOMAIN::NEIndex;
using NS_DOMAIN::ONEIndex;
using NS_DOMAIN::OSIndex;
using NS_DOMAIN::ShelfIndex;
using NS_DOMAIN::SlotIndex;
using NS_FRAME::SYSTEM;

namespace NS_FDN {

namespace {

void WriteOne(const char* head, int number, std::string& fdn) {
    FdnWriter writer(fdn);
    writer.Level(head, number).Flush();
}

void AppendIfPresent(FdnWriter& writer, const char* head, int number) {
    if (number != -1) {
        writer.Level(head, number);
    }
}

// Appends the levels that slots and sub-slots share.
void AppendSlotLevels(FdnWriter& writer, const SlotIndex& slot) {
    writer.Level("NE=", slot.neId);
    AppendIfPresent(writer, ",FR=", slot.shelfId);
    AppendIfPresent(writer, ",S=", slot.slotId);
}

// Reads the levels that slots and cards share. Returns whether there are an NE and a slot.
template <class Levels, class Record>
bool ReadSlotLevels(const Levels& levels, Record& record) {
    const bool hasNE = levels.template ReadNumber<"NE">(record.neId);
    levels.template ReadNumber<"FR">(record.shelfId);
    const bool hasSlot = levels.template ReadNumber<"S">(record.slotId);
    return hasNE && hasSlot;
}

}  // namespace

bool Conversion<OSIndex>::Read(std::string_view fdn, OSIndex& os, const Surroundings& /*surroundings*/) {
    return LevelFinder<"OS">(fdn).ReadNumber<"OS">(os.osId);
}

bool Conversion<ONEIndex>::Read(std::string_view fdn, ONEIndex& one, const Surroundings& /*surroundings*/) {
    return LevelFinder<"ONE">(fdn).ReadNumber<"ONE">(one.oneId);
}

bool Conversion<NEIndex>::Read(std::string_view fdn, NEIndex& ne, const Surroundings& /*surroundings*/) {
    return LevelFinder<"NE">(fdn).ReadNumber<"NE">(ne.neId);
}

bool Conversion<ContainedNE>::Read(std::string_view fdn, ContainedNE& ne, const Surroundings& /*surroundings*/) {
    const LevelFinder<"ONE", "NE"> levels(fdn);
    levels.ReadNumber<"ONE">(ne.oneId);
    return levels.ReadNumber<"NE">(ne.neId);
}

bool Conversion<ShelfIndex>::Read(std::string_view fdn, ShelfIndex& shelf, const Surroundings& /*surroundings*/) {
    const LevelFinder<"NE", "FR"> levels(fdn);
    const bool hasNE = levels.ReadNumber<"NE">(shelf.neId);
    const bool hasShelf = levels.ReadNumber<"FR">(shelf.shelfId);
    return hasNE && hasShelf;
}

bool Conversion<SlotIndex>::Read(std::string_view fdn, SlotIndex& slot, const Surroundings& /*surroundings*/) {
    return ReadSlotLevels(LevelFinder<"NE", "FR", "S">(fdn), slot);
}

bool Conversion<SubSlot>::Read(std::string_view fdn, SlotIndex& subSlot, const Surroundings& /*surroundings*/) {
    const LevelFinder<"NE", "FR", "S", "SS"> levels(fdn);
    ReadSlotLevels(levels, subSlot);
    return levels.ReadNumber<"SS">(subSlot.subSlotId) && !levels.Value<"NE">().empty();
}

bool Conversion<CardIndex>::Read(std::string_view fdn, CardIndex& card, const Surroundings& /*surroundings*/) {
    return ReadSlotLevels(LevelFinder<"NE", "FR", "S">(fdn), card);
}

void Conversion<OSIndex>::Write(const OSIndex& os, std::string& fdn, const Surroundings& /*surroundings*/) {
    WriteOne("OS=", os.osId, fdn);
}

void Conversion<ONEIndex>::Write(const ONEIndex& one, std::string& fdn, const Surroundings& /*surroundings*/) {
    WriteOne("ONE=", one.oneId, fdn);
}

void Conversion<NEIndex>::Write(const NEIndex& ne, std::string& fdn, const Surroundings& /*surroundings*/) {
    WriteOne("NE=", ne.neId, fdn);
}

void Conversion<ContainedNE>::Write(const ContainedNE& ne, std::string& fdn, const Surroundings& /*surroundings*/) {
    FdnWriter writer(fdn);
    if (ne.oneId != 0) {
        writer.Level("ONE=", ne.oneId).Text(",");
    }
    writer.Level("NE=", ne.neId).Flush();
}

void Conversion<ShelfIndex>::Write(const ShelfIndex& shelf, std::string& fdn, const Surroundings& /*surroundings*/) {
    FdnWriter writer(fdn);
    // Unlike for slots, an absent shelf is spelled out.
    writer.Level("NE=", shelf.neId).Level(",FR=", shelf.shelfId).Flush();
}

void Conversion<SlotIndex>::Write(const SlotIndex& slot, std::string& fdn, const Surroundings& /*surroundings*/) {
    FdnWriter writer(fdn);
    AppendSlotLevels(writer, slot);
    writer.Flush();
}

void Conversion<SubSlot>::Write(const SlotIndex& subSlot, std::string& fdn, const Surroundings& /*surroundings*/) {
    FdnWriter writer(fdn);
    AppendSlotLevels(writer, subSlot);
    AppendIfPresent(writer, ",SS=", subSlot.subSlotId);
    writer.Flush();
}

void Conversion<CardIndex>::Write(const CardIndex& card, std::string& fdn, const Surroundings& surroundings) {
    FdnWriter writer(fdn);
    writer.Level("NE=", card.neId);
    AppendIfPresent(writer, ",FR=", card.shelfId);
    if (card.slotId != -1) {
        writer.Level(",S=", card.slotId).Text(",CP=-1");
        if (IsPTN41(writer.Ask([&] { return surroundings.NEType(card.neId); }))) {
            writer.Text(",SS=-1,SC=-1");
        }
    }
    writer.Flush();
}

}  // namespace NS_FDN

using NS_FDN::Conversion;

void ResIDUtil::ResID2OSIndex(const std::string& fdn, OSIndex& os) {
    Conversion<OSIndex>::Read(fdn, os, SYSTEM);
}

void ResIDUtil::ResID2ONEIndex(const std::string& fdn, ONEIndex& one) {
    Conversion<ONEIndex>::Read(fdn, one, SYSTEM);
}

void ResIDUtil::ResID2NEIndex(const std::string& fdn, NEIndex& ne) {
    Conversion<NEIndex>::Read(fdn, ne, SYSTEM);
}

void ResIDUtil::ResID2ShelfIndex(const std::string& fdn, ShelfIndex& shelf) {
    Conversion<ShelfIndex>::Read(fdn, shelf, SYSTEM);
}

void ResIDUtil::ResID2SlotIndex(const std::string& fdn, SlotIndex& slot) {
    Conversion<SlotIndex>::Read(fdn, slot, SYSTEM);
}

void ResIDUtil::ResID2SubSlotIndex(const std::string& fdn, SlotIndex& subSlot) {
    Conversion<NS_FDN::SubSlot>::Read(fdn, subSlot, SYSTEM);
}

void ResIDUtil::ResID2CardIndex(const std::string& fdn, CardIndex& card) {
    Conversion<CardIndex>::Read(fdn, card, SYSTEM);
}

void ResIDUtil::OSID2ResID(int osId, std::string& fdn) {
    Conversion<OSIndex>::Write({.osId = osId}, fdn, SYSTEM);
}

void ResIDUtil::ONEID2ResID(int oneId, std::string& fdn) {
    Conversion<ONEIndex>::Write({.oneId = oneId}, fdn, SYSTEM);
}

void ResIDUtil::NEID2ResID(int oneId, int neId, std::string& fdn) {
    Conversion<NS_FDN::ContainedNE>::Write({.oneId = oneId, .neId = neId}, fdn, SYSTEM);
}

void ResIDUtil::OSIndex2ResID(const OSIndex& os, std::string& fdn) {
    Conversion<OSIndex>::Write(os, fdn, SYSTEM);
}

void ResIDUtil::ONEIndex2ResID(const ONEIndex& one, std::string& fdn) {
    Conversion<ONEIndex>::Write(one, fdn, SYSTEM);
}

void ResIDUtil::NEIndex2ResID(const NEIndex& ne, std::string& fdn) {
    Conversion<NEIndex>::Write(ne, fdn, SYSTEM);
}

void ResIDUtil::ShelfIndex2ResID(const ShelfIndex& shelf, std::string& fdn) {
    Conversion<ShelfIndex>::Write(shelf, fdn, SYSTEM);
}

void ResIDUtil::SlotIndex2ResID(const SlotIndex& slot, std::string& fdn) {
    Conversion<SlotIndex>::Write(slot, fdn, SYSTEM);
}

void ResIDUtil::SubSlotIndex2ResID(const SlotIndex& subSlot, std::string& fdn) {
    Conversion<NS_FDN::SubSlot>::Write(subSlot, fdn, SYSTEM);
}

void ResIDUtil::CardIndex2ResID(const CardIndex& card, std::string& fdn) {
    Conversion<CardIndex>::Write(card, fdn, SYSTEM);
}

}  // namespace NS_UTIL
