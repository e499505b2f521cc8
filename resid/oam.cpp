#include <algorithm>
#include <string>
#include <string_view>

#include <kx_domain_util/fdn.h>
#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>
#include <kx_domain_util/resIDUtil.h>

#include "frame/log.h"
#include "frame/systemsurroundings.h"
#include "resid/fdnwriter.h"
#include "resid/owntext.h"

namespace NS_UTIL {

using NS_DOMAIN::MAIndex;
using NS_DOMAIN::MDIndex;
using NS_DOMAIN::MEPIndex;
using NS_DOMAIN::MIPIndex;
using NS_FRAME::SYSTEM;

namespace NS_FDN {

namespace {

// Do not correct the log texts of this file: operators search for them as they are.

// ---- Writing --------------------------------------------------------------------------------------------------------

void AppendNumberAndName(FdnWriter& writer, bool hasNumber, int number, std::string_view name) {
    if (hasNumber) {
        writer.Decimal(number);
    }
    writer.Text("|").Text(name);
}

// Writes the NE and MD levels of any record that has them.
template <class Record>
void AppendMd(FdnWriter& writer, const Record& record, const Surroundings& surroundings) {
    writer.Level("NE=", record.neId).Text(",MD=");
    const bool isOmitted = writer.Ask([&] { return surroundings.IsMdNumberOmitted(record.neId); });
    AppendNumberAndName(writer, !isOmitted && record.mdId != -1, record.mdId, record.mdName);
}

// Writes the NE, MD and MA levels of any record that has them.
template <class Record>
void AppendMa(FdnWriter& writer, const Record& record, const Surroundings& surroundings) {
    AppendMd(writer, record, surroundings);
    writer.Text(",MA=");
    const bool isOmitted = writer.Ask([&] { return surroundings.IsMaNumberOmitted(record.neId); });
    AppendNumberAndName(writer, !isOmitted && record.maId != -1, record.maId, record.maName);
}

void WriteEndPoint(const MEPIndex& mep, std::string_view head, std::string& fdn, const Surroundings& surroundings) {
    FdnWriter writer(fdn, mep.mdName.size() + mep.maName.size());
    AppendMa(writer, mep, surroundings);
    writer.Level(head, mep.mepId).Flush();
}

// ---- Reading --------------------------------------------------------------------------------------------------------

// Two sources of levels: a parsed FDN and its text. A number is a level's first sub-value, a name its second. Without
// one, the functions return false and leave the field alone.
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

// Returns whether there are an NE and an MD.
template <class Levels, class Record>
bool ReadMd(const Levels& levels, Record& record) {
    const bool hasNE = levels.template ReadNumber<"NE">(record.neId);
    const bool hasMd = levels.template ReadNumber<"MD">(record.mdId);
    if (!hasMd) {
        record.mdId = -1;
    }
    if (!levels.template ReadName<"MD">(record.mdName)) {
        NS_FRAME::RES_ID_LOG.Write(1064, 1, "[ResIDUtil::FillMDIndex]cannot find the MDName in FDN.");
    }
    return hasNE && hasMd;
}

// Reads the MD of an MA or MIP: unlike for an MD by itself, earlier values of the record are lost.
template <class Levels, class Record>
bool ReadParentMd(const Levels& levels, Record& record) {
    record.neId = -1;
    record.mdName.clear();
    return ReadMd(levels, record);
}

// Returns whether there are an NE, an MD and an MA.
template <class Levels>
bool ReadMa(const Levels& levels, MAIndex& ma) {
    const bool hasParent = ReadParentMd(levels, ma);
    const bool hasMa = levels.template ReadNumber<"MA">(ma.maId);
    if (!hasMa) {
        ma.maId = -1;
    }
    if (!levels.template ReadName<"MA">(ma.maName)) {
        NS_FRAME::RES_ID_LOG.Write(1113, 1, "[ResIDUtil::FillMAIndex]cannot find the MAName in FDN.");
    }
    return hasParent && hasMa;
}

// Returns whether there is a MIP.
template <class Levels>
bool ReadMip(const Levels& levels, MIPIndex& mip) {
    ReadParentMd(levels, mip);
    const bool hasMip = levels.template ReadNumber<"MIP">(mip.mipId);
    if (!hasMip) {
        mip.mipId = -1;
    }
    return hasMip;
}

// Reads the value of an MD or MA level: a number, or a name after one character if the number is 0 in 32 bits.
void ReadNumberOrName(std::string_view value, std::int32_t& number, std::string& name) {
    number = Str2Int(value);
    if (number == 0) {
        name = value.substr(std::min<std::size_t>(1, value.size()));
    }
}

// SHORT: a text with fewer than four levels, which is read as far as it goes.
enum class EndPointText { WHOLE, SHORT, NOT_READABLE };

// Flattened, as the reader of ports is.
[[gnu::flatten]] EndPointText ReadLevelsOfEndPoint(std::string_view fdn, MEPIndex& mep) {
    constexpr int LAST_PLACE = 3;
    LevelScanner scanner(fdn);
    Level level;
    for (int place = 0; scanner.Next(level); ++place) {
        const bool isLast = !scanner.HasMore();
        if (!level.HasEquals()) {
            if (!isLast) {
                NS_FRAME::RES_ID_LOG.Write(1243, 1, "[ResIDUtil::ResID2MepIndex]cannot find the equality sign in FDN.");
            }
            return EndPointText::NOT_READABLE;
        }
        if (isLast) {
            mep.mepId = Str2Int(level.value);
            return place == LAST_PLACE ? EndPointText::WHOLE : EndPointText::SHORT;
        }
        switch (place) {
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
                return EndPointText::NOT_READABLE;
        }
    }
    return EndPointText::NOT_READABLE;  // an empty text has not even a last level
}

EndPointText ReadEndPoint(std::string_view fdn, MEPIndex& mep) {
    return ReadApart(fdn, LiesIn(mep.mdName, fdn) || LiesIn(mep.maName, fdn),
                     [&mep](std::string_view text) { return ReadLevelsOfEndPoint(text, mep); });
}

}  // namespace

bool Conversion<MDIndex>::Read(std::string_view fdn, MDIndex& md, const Surroundings& /*surroundings*/) {
    return ReadMd(TextLevels(fdn), md);
}

bool Conversion<MAIndex>::Read(std::string_view fdn, MAIndex& ma, const Surroundings& /*surroundings*/) {
    return ReadApart(fdn, LiesIn(ma.mdName, fdn) || LiesIn(ma.maName, fdn),
                     [&ma](std::string_view text) { return ReadMa(TextLevels(text), ma); });
}

bool Conversion<MIPIndex>::Read(std::string_view fdn, MIPIndex& mip, const Surroundings& /*surroundings*/) {
    return ReadApart(fdn, LiesIn(mip.mdName, fdn), [&mip](std::string_view text) {
        const TextLevels levels(text);
        return ReadMip(levels, mip) && !levels.Value<"NE">().empty();
    });
}

bool Conversion<MEPIndex>::Read(std::string_view fdn, MEPIndex& mep, const Surroundings& /*surroundings*/) {
    return ReadEndPoint(fdn, mep) == EndPointText::WHOLE;
}

void Conversion<MDIndex>::Write(const MDIndex& md, std::string& fdn, const Surroundings& surroundings) {
    FdnWriter writer(fdn);
    AppendMd(writer, md, surroundings);
    writer.Flush();
}

void Conversion<MAIndex>::Write(const MAIndex& ma, std::string& fdn, const Surroundings& surroundings) {
    FdnWriter writer(fdn, ma.mdName.size() + ma.maName.size());
    AppendMa(writer, ma, surroundings);
    writer.Flush();
}

void Conversion<MEPIndex>::Write(const MEPIndex& mep, std::string& fdn, const Surroundings& surroundings) {
    WriteEndPoint(mep, ",MEP=", fdn, surroundings);
}

void Conversion<RemoteMEP>::Write(const MEPIndex& mep, std::string& fdn, const Surroundings& surroundings) {
    WriteEndPoint(mep, ",RMEP=", fdn, surroundings);
}

void Conversion<MIPIndex>::Write(const MIPIndex& mip, std::string& fdn, const Surroundings& surroundings) {
    FdnWriter writer(fdn, mip.mdName.size() + mip.mipName.size());
    if (mip.mdId == -1) {
        writer.Level("NE=", mip.neId);
    } else {
        AppendMd(writer, mip, surroundings);
    }
    writer.Text(",MIP=");
    // A MIP number of 0 counts as none, unlike those of MD and MA.
    AppendNumberAndName(writer, mip.mipId != 0 && mip.mipId != -1, mip.mipId, mip.mipName);
    writer.Flush();
}

}  // namespace NS_FDN

using NS_FDN::Conversion;

void ResIDUtil::MDIndex2ResID(const MDIndex& md, std::string& fdn) {
    Conversion<MDIndex>::Write(md, fdn, SYSTEM);
}

void ResIDUtil::MAIndex2ResID(const MAIndex& ma, std::string& fdn) {
    Conversion<MAIndex>::Write(ma, fdn, SYSTEM);
}

void ResIDUtil::MepIndex2ResID(const MEPIndex& mep, std::string& fdn) {
    Conversion<MEPIndex>::Write(mep, fdn, SYSTEM);
}

void ResIDUtil::RmepIndex2ResID(const MEPIndex& mep, std::string& fdn) {
    Conversion<NS_FDN::RemoteMEP>::Write(mep, fdn, SYSTEM);
}

void ResIDUtil::MIPIndex2ResID(const MIPIndex& mip, std::string& fdn) {
    Conversion<MIPIndex>::Write(mip, fdn, SYSTEM);
}

void ResIDUtil::FillMDIndex(const MocLvlValueMap& map, MDIndex& md) {
    NS_FDN::ReadMd(NS_FDN::MapLevels(map), md);
}

void ResIDUtil::FillMAIndex(const MocLvlValueMap& map, MAIndex& ma) {
    NS_FDN::ReadMa(NS_FDN::MapLevels(map), ma);
}

void ResIDUtil::FillMIPIndex(const MocLvlValueMap& map, MIPIndex& mip) {
    NS_FDN::ReadMip(NS_FDN::MapLevels(map), mip);
}

void ResIDUtil::ResID2MDIndex(const std::string& fdn, MDIndex& md) {
    Conversion<MDIndex>::Read(fdn, md, SYSTEM);
}

void ResIDUtil::ResID2MAIndex(const std::string& fdn, MAIndex& ma) {
    Conversion<MAIndex>::Read(fdn, ma, SYSTEM);
}

void ResIDUtil::ResID2MIPIndex(const std::string& fdn, MIPIndex& mip) {
    Conversion<MIPIndex>::Read(fdn, mip, SYSTEM);
}

int ResIDUtil::ResID2MepIndex(const std::string& fdn, MEPIndex& mep) {
    return NS_FDN::ReadEndPoint(fdn, mep) == NS_FDN::EndPointText::NOT_READABLE ? MEP_NOT_READABLE : 0;
}

}  // namespace NS_UTIL
