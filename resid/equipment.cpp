#include <string>

#include <kx_domain_util/levelfinder.h>
#include <kx_domain_util/netype.h>
#include <kx_domain_util/resIDUtil.h>

#include "frame/inventory.h"
#include "resid/fdnwriter.h"

namespace NS_UTIL {

using NS_DOMAIN::CardIndex;
using NS_DOMAIN::NEIndex;
using NS_DOMAIN::ONEIndex;
using NS_DOMAIN::OSIndex;
using NS_DOMAIN::ShelfIndex;
using NS_DOMAIN::SlotIndex;
using NS_FDN::FdnWriter;
using NS_FDN::LevelFinder;

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

// The levels that slot and sub-slot identifiers share.
void AppendSlotLevels(FdnWriter& writer, const SlotIndex& slot) {
    writer.Level("NE=", slot.neId);
    AppendIfPresent(writer, ",FR=", slot.shelfId);
    AppendIfPresent(writer, ",S=", slot.slotId);
}

}  // namespace

void ResIDUtil::ResID2OSIndex(const std::string& fdn, OSIndex& os) {
    LevelFinder<"OS">(fdn).ReadNumber<"OS">(os.osId);
}

void ResIDUtil::ResID2ONEIndex(const std::string& fdn, ONEIndex& one) {
    LevelFinder<"ONE">(fdn).ReadNumber<"ONE">(one.oneId);
}

void ResIDUtil::ResID2NEIndex(const std::string& fdn, NEIndex& ne) {
    LevelFinder<"NE">(fdn).ReadNumber<"NE">(ne.neId);
}

void ResIDUtil::ResID2ShelfIndex(const std::string& fdn, ShelfIndex& shelf) {
    const LevelFinder<"NE", "FR"> levels(fdn);
    levels.ReadNumber<"NE">(shelf.neId);
    levels.ReadNumber<"FR">(shelf.shelfId);
}

void ResIDUtil::ResID2SlotIndex(const std::string& fdn, SlotIndex& slot) {
    const LevelFinder<"NE", "FR", "S"> levels(fdn);
    levels.ReadNumber<"NE">(slot.neId);
    levels.ReadNumber<"FR">(slot.shelfId);
    levels.ReadNumber<"S">(slot.slotId);
}

void ResIDUtil::ResID2SubSlotIndex(const std::string& fdn, SlotIndex& subSlot) {
    const LevelFinder<"NE", "FR", "S", "SS"> levels(fdn);
    levels.ReadNumber<"NE">(subSlot.neId);
    levels.ReadNumber<"FR">(subSlot.shelfId);
    levels.ReadNumber<"S">(subSlot.slotId);
    levels.ReadNumber<"SS">(subSlot.subSlotId);
}

void ResIDUtil::ResID2CardIndex(const std::string& fdn, CardIndex& card) {
    const LevelFinder<"NE", "FR", "S"> levels(fdn);
    levels.ReadNumber<"NE">(card.neId);
    levels.ReadNumber<"FR">(card.shelfId);
    levels.ReadNumber<"S">(card.slotId);
}

void ResIDUtil::OSID2ResID(int osId, std::string& fdn) {
    WriteOne("OS=", osId, fdn);
}

void ResIDUtil::ONEID2ResID(int oneId, std::string& fdn) {
    WriteOne("ONE=", oneId, fdn);
}

void ResIDUtil::NEID2ResID(int oneId, int neId, std::string& fdn) {
    FdnWriter writer(fdn);
    if (oneId != 0) {
        writer.Level("ONE=", oneId).Text(",");
    }
    writer.Level("NE=", neId).Flush();
}

void ResIDUtil::OSIndex2ResID(const OSIndex& os, std::string& fdn) {
    WriteOne("OS=", os.osId, fdn);
}

void ResIDUtil::ONEIndex2ResID(const ONEIndex& one, std::string& fdn) {
    WriteOne("ONE=", one.oneId, fdn);
}

void ResIDUtil::NEIndex2ResID(const NEIndex& ne, std::string& fdn) {
    WriteOne("NE=", ne.neId, fdn);
}

void ResIDUtil::ShelfIndex2ResID(const ShelfIndex& shelf, std::string& fdn) {
    FdnWriter writer(fdn);
    // Unlike the slot writers, this one spells an absent shelf out.
    writer.Level("NE=", shelf.neId).Level(",FR=", shelf.shelfId).Flush();
}

void ResIDUtil::SlotIndex2ResID(const SlotIndex& slot, std::string& fdn) {
    FdnWriter writer(fdn);
    AppendSlotLevels(writer, slot);
    writer.Flush();
}

void ResIDUtil::SubSlotIndex2ResID(const SlotIndex& subSlot, std::string& fdn) {
    FdnWriter writer(fdn);
    AppendSlotLevels(writer, subSlot);
    AppendIfPresent(writer, ",SS=", subSlot.subSlotId);
    writer.Flush();
}

void ResIDUtil::CardIndex2ResID(const CardIndex& card, std::string& fdn) {
    FdnWriter writer(fdn);
    writer.Level("NE=", card.neId);
    AppendIfPresent(writer, ",FR=", card.shelfId);
    if (card.slotId != -1) {
        writer.Level(",S=", card.slotId).Text(",CP=-1");
        if (IsPTN41(writer.Ask([&] { return NS_FRAME::QueryNEType(card.neId); }))) {
            writer.Text(",SS=-1,SC=-1");
        }
    }
    writer.Flush();
}

}  // namespace NS_UTIL
