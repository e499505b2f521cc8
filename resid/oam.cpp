#include <algorithm>
#include <string>
#include <string_view>

#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>
#include <kx_domain_util/resIDUtil.h>

#include "frame/log.h"
#include "frame/serviceaccess.h"
#include "resid/fdnwriter.h"

namespace NS_UTIL {

using NS_DOMAIN::MAIndex;
using NS_DOMAIN::MDIndex;
using NS_DOMAIN::MEPIndex;
using NS_DOMAIN::MIPIndex;
using NS_FDN::FdnWriter;
using NS_FDN::Level;
using NS_FDN::LevelFinder;
using NS_FDN::LevelScanner;
using NS_FDN::SubValues;
using NS_FDN::Tag;
using NS_SERVICE::InventoryBufif;

namespace {

// The log texts of this file are as operators search for them; not to be corrected.

// ---- Writing --------------------------------------------------------------------------------------------------------

void AppendNumberAndName(FdnWriter& writer, bool hasNumber, int number, std::string_view name) {
    if (hasNumber) {
        writer.Decimal(number);
    }
    writer.Text("|").Text(name);
}

// Writes the NE and MD levels of any record that has them.
template <class Record>
void AppendMd(FdnWriter& writer, const Record& record) {
    writer.Level("NE=", record.neId).Text(",MD=");
    const bool isOmitted = writer.Ask([&] {
        NS_FRAME::ServiceAccess<InventoryBufif> inventory;
        return inventory.Get().IsOamNumberOmitted(record.neId);
    });
    AppendNumberAndName(writer, !isOmitted && record.mdId != -1, record.mdId, record.mdName);
}

// Writes the NE, MD and MA levels of any record that has them.
template <class Record>
void AppendMa(FdnWriter& writer, const Record& record) {
    AppendMd(writer, record);
    writer.Text(",MA=");
    // Asked once more. Here, unlike for the MD level, every exception of the look-up propagates, on purpose: callers
    // rely on it.
    const bool isOmitted = writer.Ask([&] {
        NS_FRAME::ServiceAccess<InventoryBufif> inventory;
        return inventory.GetLettingAllPass().IsOamNumberOmitted(record.neId);
    });
    AppendNumberAndName(writer, !isOmitted && record.maId != -1, record.maId, record.maName);
}

void WriteEndPoint(const MEPIndex& mep, std::string_view head, std::string& fdn) {
    FdnWriter writer(fdn, mep.mdName.size() + mep.maName.size());
    AppendMa(writer, mep);
    writer.Level(head, mep.mepId).Flush();
}

// ---- Reading --------------------------------------------------------------------------------------------------------

// Where the levels of a record are read from: a parsed FDN or its text. A number is a level's first sub-value, a name
// its second; false, and the field untouched, when there is none.
class MapLevels {
public:
    explicit MapLevels(const MocLvlValueMap& map) : m_map(map) {}

    template <Tag Wanted>
    bool ReadNumber(std::int32_t& number) const {
        return ResIDUtil::GetValueByMocLvlName(std::string(Wanted.Text()), m_map, number);
    }
    template <Tag Wanted>
    bool ReadName(std::string& name) const {
        return ResIDUtil::GetValueByMocLvlName(std::string(Wanted.Text()), m_map, name, 1);
    }

private:
    const MocLvlValueMap& m_map;
};

class TextLevels : public LevelFinder<"NE", "MD", "MA", "MIP"> {
public:
    using LevelFinder::LevelFinder;

    template <Tag Wanted>
    bool ReadName(std::string& name) const {
        const SubValues<2> subValues(Value<Wanted>());
        if (subValues.Count() < 2) {
            return false;
        }
        name = subValues[1];
        return true;
    }
};

template <class Levels, class Record>
void ReadMd(const Levels& levels, Record& record) {
    levels.template ReadNumber<"NE">(record.neId);
    if (!levels.template ReadNumber<"MD">(record.mdId)) {
        record.mdId = -1;
    }
    if (!levels.template ReadName<"MD">(record.mdName)) {
        NS_FRAME::RES_ID_LOG.Write(1064, 1, "[ResIDUtil::FillMDIndex]cannot find the MDName in FDN.");
    }
}

// The MD of an MA or MIP: unlike an MD that is read by itself, it keeps nothing that the record held before.
template <class Levels, class Record>
void ReadParentMd(const Levels& levels, Record& record) {
    record.neId = -1;
    record.mdName.clear();
    ReadMd(levels, record);
}

template <class Levels>
void ReadMa(const Levels& levels, MAIndex& ma) {
    ReadParentMd(levels, ma);
    if (!levels.template ReadNumber<"MA">(ma.maId)) {
        ma.maId = -1;
    }
    if (!levels.template ReadName<"MA">(ma.maName)) {
        NS_FRAME::RES_ID_LOG.Write(1113, 1, "[ResIDUtil::FillMAIndex]cannot find the MAName in FDN.");
    }
}

template <class Levels>
void ReadMip(const Levels& levels, MIPIndex& mip) {
    ReadParentMd(levels, mip);
    if (!levels.template ReadNumber<"MIP">(mip.mipId)) {
        mip.mipId = -1;
    }
}

// Reads an MD or MA value by position. The number counts as it is stored, in 32 bits.
void ReadNumberOrName(std::string_view value, std::int32_t& number, std::string& name) {
    number = Str2Int(value);
    if (number == 0) {
        name = value.substr(std::min<std::size_t>(1, value.size()));
    }
}

}  // namespace

void ResIDUtil::MDIndex2ResID(const MDIndex& md, std::string& fdn) {
    FdnWriter writer(fdn);
    AppendMd(writer, md);
    writer.Flush();
}

void ResIDUtil::MAIndex2ResID(const MAIndex& ma, std::string& fdn) {
    FdnWriter writer(fdn, ma.mdName.size() + ma.maName.size());
    AppendMa(writer, ma);
    writer.Flush();
}

void ResIDUtil::MepIndex2ResID(const MEPIndex& mep, std::string& fdn) {
    WriteEndPoint(mep, ",MEP=", fdn);
}

void ResIDUtil::RmepIndex2ResID(const MEPIndex& mep, std::string& fdn) {
    WriteEndPoint(mep, ",RMEP=", fdn);
}

void ResIDUtil::MIPIndex2ResID(const MIPIndex& mip, std::string& fdn) {
    FdnWriter writer(fdn, mip.mdName.size() + mip.mipName.size());
    if (mip.mdId == -1) {
        writer.Level("NE=", mip.neId);
    } else {
        AppendMd(writer, mip);
    }
    writer.Text(",MIP=");
    // A MIP number of 0 counts as none, unlike those of MD and MA.
    AppendNumberAndName(writer, mip.mipId != 0 && mip.mipId != -1, mip.mipId, mip.mipName);
    writer.Flush();
}

void ResIDUtil::FillMDIndex(const MocLvlValueMap& map, MDIndex& md) {
    ReadMd(MapLevels(map), md);
}

void ResIDUtil::FillMAIndex(const MocLvlValueMap& map, MAIndex& ma) {
    ReadMa(MapLevels(map), ma);
}

void ResIDUtil::FillMIPIndex(const MocLvlValueMap& map, MIPIndex& mip) {
    ReadMip(MapLevels(map), mip);
}

void ResIDUtil::ResID2MDIndex(const std::string& fdn, MDIndex& md) {
    ReadMd(TextLevels(fdn), md);
}

void ResIDUtil::ResID2MAIndex(const std::string& fdn, MAIndex& ma) {
    ReadMa(TextLevels(fdn), ma);
}

void ResIDUtil::ResID2MIPIndex(const std::string& fdn, MIPIndex& mip) {
    ReadMip(TextLevels(fdn), mip);
}

int ResIDUtil::ResID2MepIndex(const std::string& fdn, MEPIndex& mep) {
    LevelScanner scanner(fdn);
    Level level;
    for (int count = 0; scanner.Next(level); ++count) {
        const bool isLast = !scanner.HasMore();
        if (!level.HasEquals()) {
            if (!isLast) {
                NS_FRAME::RES_ID_LOG.Write(1243, 1, "[ResIDUtil::ResID2MepIndex]cannot find the equality sign in FDN.");
            }
            return MEP_NOT_READABLE;
        }
        if (isLast) {
            mep.mepId = Str2Int(level.value);
            return 0;
        }
        switch (count) {
            case 0:
                mep.neId = Str2Int(level.value);
                break;
            case 1:
                ReadNumberOrName(level.value, mep.mdId, mep.mdName);
                break;
            case 2:
                ReadNumberOrName(level.value, mep.maId, mep.maName);
                break;
            default:
                NS_FRAME::RES_ID_LOG.Write(1238, 1, "[ResIDUtil::ResID2MepIndex]countis invalid value.");
                return MEP_NOT_READABLE;
        }
    }
    return MEP_NOT_READABLE;  // an empty text has not even a last level
}

}  // namespace NS_UTIL
