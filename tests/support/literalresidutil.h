/// A reference implementation of the conversions, slow and obvious: every reader fills a map and looks levels up in it,
/// every writer uses a string stream. Tests, fuzzers and benchmarks compare `NS_UTIL::ResIDUtil` with it.
///
/// Has the names and arguments of `NS_UTIL::ResIDUtil`. The caller sets the services; they are not looked up.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <kx_domain_util/domainindex.h>
#include <kx_platform/configitems.h>
#include <kx_platform/dawsvcinterface.h>
#include <kx_platform/inventorybufif.h>
#include <kx_platform/logsvcinterface.h>

namespace NS_TEST {

class LiteralResIDUtil {
public:
    using Map = std::map<std::string, std::vector<std::string>>;

    /// Thrown where `NS_UTIL::ResIDUtil` throws `InterfaceNotExistException`.
    struct NoService : std::runtime_error {
        NoService() : std::runtime_error("no service") {}
    };

    /// The writers ask it; null if there is none.
    inline static NS_SERVICE::InventoryBufif* inventory = nullptr;
    /// The reader of loop-back ports asks it; null if there is none.
    inline static NS_SERVICE::DAWSvcInterface* dataAccess = nullptr;
    /// The OAM readers log to it; null if there is none.
    inline static NS_SERVICE::ModuleLogger* logger = nullptr;

    // ---- The grammar ------------------------------------------------------------------------------------------------

    static void Fdn2MocLvlValueMap(const std::string& fdn, Map& map) {
        map.clear();
        for (const std::string& piece : Split(fdn, ',')) {
            std::string tag;
            std::vector<std::string> values;
            ResolveMocLevelObj(piece, tag, values);
            map.insert({tag, values});
        }
    }

    static void ResolveMocLevelObj(const std::string& level, std::string& tag, std::vector<std::string>& values) {
        std::string value;
        const auto equals = level.find('=');
        if (equals == std::string::npos) {
            tag = level;
        } else {
            tag = level.substr(0, equals);
            value = level.substr(equals + 1);
        }
        for (const std::string& subValue : Split(value, '|')) {
            values.push_back(subValue);
        }
    }

    static bool GetValueByMocLvlName(const std::string& tag, const Map& map, std::string& value, int index) {
        if (map.count(tag) == 0) {
            return false;
        }
        const std::vector<std::string>& values = map.at(tag);
        if (static_cast<std::size_t>(index) + 1 > values.size()) {
            return false;
        }
        value = values[static_cast<std::size_t>(index)];
        return true;
    }

    static bool GetValueByMocLvlName(const std::string& tag, const Map& map, int& value, int index) {
        std::string text;
        if (!GetValueByMocLvlName(tag, map, text, index)) {
            return false;
        }
        value = ToInt(text);
        return true;
    }

    static bool GetValueByMocLvlName(const std::string& tag, const Map& map, int& value) {
        return GetValueByMocLvlName(tag, map, value, 0);
    }

    static void ConstructMocLevelObj(const std::string& tag, const std::vector<std::string>& values,
                                     std::string& level) {
        if (values.empty()) {
            return;
        }
        std::ostringstream text;
        text << tag << '=';
        for (std::size_t at = 0; at < values.size(); ++at) {
            text << (at == 0 ? "" : "|") << values[at];
        }
        level = text.str();
    }

    static bool ResolveFDNByMoc(const std::string& fdn, const char* tag, int minCount,
                                std::vector<std::string>& values) {
        const auto found = fdn.find(tag);
        if (found == std::string::npos) {
            return false;
        }
        const auto begin = found + std::string(tag).size();
        const auto comma = fdn.find(',', begin);
        std::string value;
        if (comma == std::string::npos) {
            value = fdn.substr(begin);
        } else if (comma > begin && fdn[comma - 1] != '\\') {
            value = fdn.substr(begin, comma - begin);
        }
        for (const std::string& subValue : Split(value, '|')) {
            values.push_back(subValue);
        }
        return static_cast<long>(values.size()) >= minCount;
    }

    static std::string GetMOCFromFDN(const std::string& fdn) {
        if (fdn.empty()) {
            return "";
        }
        std::size_t begin = 0;
        if (fdn.find(',') != std::string::npos) {
            begin = fdn.find_last_of(',') + 1;
        }
        std::size_t end = fdn.size();
        const auto equals = fdn.find_last_of('=');
        if (equals != std::string::npos && equals >= begin) {
            end = equals;
        }
        return fdn.substr(begin, end - begin);
    }

    // ---- Equipment --------------------------------------------------------------------------------------------------

    static void ResID2OSIndex(const std::string& fdn, NS_DOMAIN::OSIndex& os) { Read(Parse(fdn), "OS", os.osId); }
    static void ResID2ONEIndex(const std::string& fdn, NS_DOMAIN::ONEIndex& one) { Read(Parse(fdn), "ONE", one.oneId); }
    static void ResID2NEIndex(const std::string& fdn, NS_DOMAIN::NEIndex& ne) { Read(Parse(fdn), "NE", ne.neId); }

    static void ResID2ShelfIndex(const std::string& fdn, NS_DOMAIN::ShelfIndex& shelf) {
        const Map map = Parse(fdn);
        Read(map, "NE", shelf.neId);
        Read(map, "FR", shelf.shelfId);
    }

    static void ResID2SlotIndex(const std::string& fdn, NS_DOMAIN::SlotIndex& slot) {
        const Map map = Parse(fdn);
        Read(map, "NE", slot.neId);
        Read(map, "FR", slot.shelfId);
        Read(map, "S", slot.slotId);
    }

    static void ResID2SubSlotIndex(const std::string& fdn, NS_DOMAIN::SlotIndex& subSlot) {
        ResID2SlotIndex(fdn, subSlot);
        Read(Parse(fdn), "SS", subSlot.subSlotId);
    }

    static void ResID2CardIndex(const std::string& fdn, NS_DOMAIN::CardIndex& card) {
        const Map map = Parse(fdn);
        Read(map, "NE", card.neId);
        Read(map, "FR", card.shelfId);
        Read(map, "S", card.slotId);
    }

    static void OSID2ResID(int osId, std::string& fdn) { fdn = "OS=" + Number(osId); }
    static void ONEID2ResID(int oneId, std::string& fdn) { fdn = "ONE=" + Number(oneId); }
    static void NEID2ResID(int oneId, int neId, std::string& fdn) {
        fdn = (oneId != 0 ? "ONE=" + Number(oneId) + "," : "") + "NE=" + Number(neId);
    }
    static void OSIndex2ResID(const NS_DOMAIN::OSIndex& os, std::string& fdn) { fdn = "OS=" + Number(os.osId); }
    static void ONEIndex2ResID(const NS_DOMAIN::ONEIndex& one, std::string& fdn) { fdn = "ONE=" + Number(one.oneId); }
    static void NEIndex2ResID(const NS_DOMAIN::NEIndex& ne, std::string& fdn) { fdn = "NE=" + Number(ne.neId); }
    static void ShelfIndex2ResID(const NS_DOMAIN::ShelfIndex& shelf, std::string& fdn) {
        fdn = "NE=" + Number(shelf.neId) + ",FR=" + Number(shelf.shelfId);
    }

    static void SlotIndex2ResID(const NS_DOMAIN::SlotIndex& slot, std::string& fdn) {
        fdn = "NE=" + Number(slot.neId);
        if (slot.shelfId != -1) {
            fdn += ",FR=" + Number(slot.shelfId);
        }
        if (slot.slotId != -1) {
            fdn += ",S=" + Number(slot.slotId);
        }
    }

    static void SubSlotIndex2ResID(const NS_DOMAIN::SlotIndex& subSlot, std::string& fdn) {
        SlotIndex2ResID(subSlot, fdn);
        if (subSlot.subSlotId != -1) {
            fdn += ",SS=" + Number(subSlot.subSlotId);
        }
    }

    static void CardIndex2ResID(const NS_DOMAIN::CardIndex& card, std::string& fdn) {
        fdn = "NE=" + Number(card.neId);
        if (card.shelfId != -1) {
            fdn += ",FR=" + Number(card.shelfId);
        }
        if (card.slotId == -1) {
            return;
        }
        fdn += ",S=" + Number(card.slotId) + ",CP=-1";
        const unsigned neType = QueryNEType(card.neId);
        if (neType == 1911 || neType == 1912 || neType == 1913) {
            fdn += ",SS=-1,SC=-1";
        }
    }

    // ---- Ports, access points, termination points -------------------------------------------------------------------

    static void PortIndex2ResID(const NS_DOMAIN::PortIndex& port, std::string& fdn, bool asLogical) {
        fdn = "NE=" + Number(port.neId);
        if (!port.isLogical) {
            if (port.shelfId != -1) {
                fdn += ",FR=" + Number(port.shelfId);
            }
        } else if (port.fbType == 65543 || port.fbType == 65547 || port.fbType == 65549 || port.fbType == 65562 ||
                   port.fbType == 65571 || port.fbType == 65635) {
            if (port.shelfId != -1 && port.slotId != -1) {
                fdn += ",FR=" + Number(port.shelfId);
            }
        }
        const int carrierProfile = CarrierProfile();
        std::vector<int> subSlotTypes;
        std::string list;
        if (Items().GetStrItemInfo("NETypeListForSubSlot", list) && !list.empty()) {
            for (const std::string& piece : Split(list, ',')) {
                if (!piece.empty()) {
                    subSlotTypes.push_back(ToInt(piece));
                }
            }
        }
        if (port.slotId == -1) {
            if (carrierProfile != 0 && (port.fbType == 0 || port.fbType == 65547)) {
                fdn += ",S=0,CP=-1";
            }
        } else {
            fdn += ",S=" + Number(port.slotId) + ",CP=-1";
            if (port.subSlotId != -1) {
                fdn += ",SS=" + Number(port.subSlotId) + ",SC=-1";
            } else {
                const int neType = QueryNEType(port.neId);
                for (const int type : subSlotTypes) {
                    if (type == neType) {
                        fdn += ",SS=-1,SC=-1";
                        break;
                    }
                }
            }
        }
        fdn += PortLevel(port, asLogical, Text(static_cast<std::uint32_t>(port.portId)));
    }

    static void PortIndex2ResIDByNEType(const NS_DOMAIN::PortIndex& port, std::string& fdn, bool asLogical,
                                        unsigned long neType) {
        fdn = "NE=" + Number(port.neId);
        if (port.shelfId != -1) {
            fdn += ",FR=" + Number(port.shelfId);
        }
        if (port.slotId != -1) {
            fdn += ",S=" + Number(port.slotId);
        }
        if (port.subSlotId != -1) {
            fdn += ",SS=" + Number(port.subSlotId) + ",SC=-1";
        } else if (!asLogical && (neType == 1911 || neType == 1912)) {
            fdn += ",SS=" + Number(-1) + ",SC=-1";
        }
        fdn += PortLevel(port, asLogical, Number(port.portId));
    }

    static void PortIndex2ResID(const NS_DOMAIN::CtpKey_T& key, std::string& fdn, bool withSubIf) {
        PortIndex2ResID(key.port, fdn, withSubIf);
        if (withSubIf && key.subIfId > 0) {
            fdn += ",SUBIF=" + Number(key.subIfId);
        }
    }

    static void APIndex2ResID(const NS_DOMAIN::CtpKey_T& key, std::string& fdn, bool asLogical) {
        PortIndex2ResID(key.port, fdn, asLogical);
        fdn += ",AP=" + Number(key.apValue1) + "|" + Number(key.apValue2) + "|";
        if (key.subIfId != 0) {
            fdn += Number(key.subIfId);
        }
    }

    static void TPIndex2ResID(const NS_DOMAIN::TPIndex& tp, std::string& fdn) {
        NS_DOMAIN::PortIndex port;
        port.reserved = tp.reserved;
        port.reserved2 = -1;
        port.neId = tp.neId;
        port.shelfId = tp.shelfId;
        port.slotId = tp.slotId;
        port.subSlotId = tp.subSlotId;
        port.portId = tp.portId;
        port.ppType = tp.ppType;
        port.fbType = tp.fbType;
        port.portLabel = tp.portLabel;
        port.isLogical = tp.isLogical;
        std::string subIf;
        const auto dot = tp.portLabel.find('.');
        if (tp.ppType == 251 && dot != std::string::npos) {
            port.portLabel = tp.portLabel.substr(0, dot);
            subIf = tp.portLabel.substr(dot + 1);
        }
        PortIndex2ResID(port, fdn, tp.isLogical);
        if (!subIf.empty()) {
            fdn += ",SUBIF=" + subIf;
        }
        if (tp.ppType == 251) {
            fdn += tp.vc4Id != 0 ? ",VC4=" + Number(tp.vc4Id) : "";
            fdn += tp.vc12Id != 0 ? ",VC12=" + Number(tp.vc12Id) : "";
        }
    }

    static void ResID2PortIndex(const std::string& fdn, NS_DOMAIN::PortIndex& port) {
        if (fdn.find("FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|") != std::string::npos) {
            return;
        }
        const Map map = Parse(fdn);
        ReadContainers(map, port);
        const int carrierProfile = CarrierProfile();
        if (carrierProfile != 0 && port.slotId < 1) {
            port.slotId = -1;
            port.subSlotId = -1;
        }
        ReadPortLevel(map, port, true);
        if (carrierProfile != 0 && port.ppType == 251 && (port.fbType == 65547 || port.fbType == 65549)) {
            port.slotId = -1;
            port.subSlotId = -1;
        }
    }

    static void ResID2PortIndex(const std::string& fdn, NS_DOMAIN::CtpKey_T& key) {
        ResID2PortIndex(fdn, key.port);
        const std::string tag = "SUBIF=";
        const auto subIf = fdn.find(tag);
        if (subIf != std::string::npos) {
            key.subIfId = ToInt(fdn.substr(subIf + tag.size()));
        }
    }

    static void ResID2APIndex(const std::string& fdn, NS_DOMAIN::CtpKey_T& key) {
        if (key.port.neId == -1) {
            ResID2PortIndex(fdn, key.port);
        }
        std::string parsed = fdn;
        if (key.port.ppType == 16) {
            if (const auto subIf = fdn.find("SUBIF"); subIf != std::string::npos) {
                parsed = fdn.substr(subIf);
            } else if (const auto channelSet = fdn.find("CHANNELSET"); channelSet != std::string::npos) {
                const std::string text = fdn.substr(channelSet);
                const auto equals = text.rfind('=');
                parsed.clear();
                if (equals != std::string::npos) {
                    parsed = fdn.substr(0, equals) + "AP=" + "|" + "|" + "1" + "000" + text.substr(equals + 1);
                }
            }
        }
        const Map map = Parse(parsed);
        key.neId = key.port.neId;
        Read(map, "VR", key.vrId);
        key.fbType = key.port.fbType;
        if (map.count("AP") != 0 && map.at("AP").size() >= 3) {
            GetValueByMocLvlName("AP", map, key.apValue1, 0);
            GetValueByMocLvlName("AP", map, key.apValue2, 1);
            GetValueByMocLvlName("AP", map, key.apText, 1);
            GetValueByMocLvlName("AP", map, key.subIfId, 2);
        } else {
            Read(map, "SUBIF", key.subIfId);
        }
        key.fdnText = parsed.empty() ? fdn : parsed;
    }

    static void ResID2TPIndex(const std::string& fdn, NS_DOMAIN::TPIndex& tp) {
        const Map map = Parse(fdn);
        NS_DOMAIN::PortIndex port;
        port.reserved = 0;
        port.reserved2 = -1;
        ResID2PortIndex(fdn, port);
        tp.reserved = port.reserved;
        tp.neId = port.neId;
        tp.shelfId = port.shelfId;
        tp.slotId = port.slotId;
        tp.subSlotId = port.subSlotId;
        tp.portId = port.portId;
        tp.ppType = port.ppType;
        tp.fbType = port.fbType;
        tp.portLabel = port.portLabel;
        tp.isLogical = port.isLogical;
        int subIf = -1;
        if (GetValueByMocLvlName("SUBIF", map, subIf) && subIf != -1) {
            tp.portLabel.append(".").append(Number(subIf));
        }
    }

    static void ResID2LoopBackPortIndex(const std::string& fdn, NS_DOMAIN::PortIndex& port) {
        const Map map = Parse(fdn);
        ReadContainers(map, port);
        if (dataAccess == nullptr) {
            throw NoService();
        }
        if (auto* const configuration = dataAccess->GetConfiguration("kx_corbaagent_bundle/bundle.cfg", "")) {
            int carrierProfile = 0;
            configuration->GetIntItemInfo("Telvandaire", carrierProfile);
        }
        ReadPortLevel(map, port, false);
    }

    // ---- Services, trails, tunnels ----------------------------------------------------------------------------------

    static void PWIndex2ResID(const NS_DOMAIN::PWIndex& pw, std::string& fdn) {
        fdn = "NE=" + Number(pw.neId) + "," + pw.resId;
    }

    static void ResID2PWIndex(const std::string& fdn, NS_DOMAIN::PWIndex& pw) {
        Read(Parse(fdn), "NE", pw.neId);
        pw.resId = fdn;
    }

    // Reads items NAME=value. The first item of a name counts, even if its value is empty.
    static void ResID2PWSwitchIndex(const std::string& fdn, NS_DOMAIN::PWSwitchIndex& pwSwitch) {
        for (const std::string& item : Split(fdn, ',')) {
            if (item.substr(0, 3) == "NE=") {
                pwSwitch.neId = ToInt(item.substr(3));
                break;
            }
        }
        pwSwitch.resId = fdn;
    }

    static void ResID2GroupID(const std::string& fdn, int& group) { Read(Parse(fdn), "VEGROUP", group); }

    static void ResID2VPNTrailIndex(const std::string& fdn, NS_DOMAIN::VPNTrailIndex& trail) {
        if (fdn.find("PWE3TRAIL=") != std::string::npos) {
            trail.trailResId = fdn.substr(fdn.find("PWE3TRAIL="));
            trail.trailType = 1;
        } else if (fdn.find("VPLS=") != std::string::npos) {
            trail.trailResId = fdn.substr(fdn.find("VPLS="));
            trail.trailType = 2;
        }
    }

    static void ResID2TunnelTrailIndex(const std::string& fdn, NS_DOMAIN::TunnelTrailIndex& trail) {
        ReadTrail(fdn, "TUNNELTRAIL=", trail.trailResId);
    }
    static void ResID2PWTrailIndex(const std::string& fdn, NS_DOMAIN::PWTrailIndex& trail) {
        ReadTrail(fdn, "PWTRAIL=", trail.trailResId);
    }
    static void ResID2TNPIndex(const std::string& fdn, NS_DOMAIN::TNPIndex_T& group) {
        ReadTrail(fdn, "TUNNELPGTRAIL=", group.trailResId);
    }

    static void ResID2SVCIndex(const std::string& fdn, NS_DOMAIN::ServiceIndex& service) {
        Map map = Parse(fdn);
        Read(map, "NE", service.neId);
        if (map.count("PWE3") != 0) {
            if (map["PWE3"].size() >= 2) {
                service.svcType = ToInt(map["PWE3"][0]);
                service.svcId = ToInt(map["PWE3"][1]);
            }
        } else if (map.count("NETH") != 0) {
            service.svcType = 2;
            Read(map, "NETH", service.svcId);
        } else if (map.count("VSI") != 0) {
            service.svcType = 4;
            Read(map, "VSI", service.svcId);
        } else if (map.count("VRF") != 0) {
            Read(map, "VRF", service.svcId);
        }
        service.resId = fdn;
    }

    static void ResID2TunnelIndex(const std::string& fdn, NS_DOMAIN::TunnelIndex& tunnel) {
        Map map = Parse(fdn);
        Read(map, "NE", tunnel.neId);
        const std::vector<std::string> values = map["TUNNEL"];
        if (values.size() >= 7) {
            tunnel.tunnelInt0 = ToInt(values[0]);
            tunnel.tunnelInt1 = ToInt(values[1]);
            tunnel.tunnelText2 = values[2];
            tunnel.tunnelText3 = values[3];
            tunnel.tunnelInt4 = ToInt(values[4]);
            tunnel.tunnelText5 = values[5];
            tunnel.tunnelText5Copy = values[5];
            tunnel.tunnelInt6 = ToInt(values[6]);
        }
        tunnel.resId = fdn;
    }

    static void ResID2TDIndex(const std::string& fdn, NS_DOMAIN::TDIndex& descriptor) {
        const Map map = Parse(fdn);
        int neId = 0;
        Read(map, "NE", neId);
        descriptor.neId = neId;
        int tdId = 0;
        if (GetValueByMocLvlName("ATMTD", map, tdId)) {
            descriptor.tdId = tdId;
        }
    }

    // ---- OAM --------------------------------------------------------------------------------------------------------

    static void MDIndex2ResID(const NS_DOMAIN::MDIndex& md, std::string& fdn) {
        fdn = "NE=" + Number(md.neId) + ",MD=";
        if (!IsOamNumberOmitted(md.neId) && md.mdId != -1) {
            fdn += Number(md.mdId);
        }
        fdn += "|" + md.mdName;
    }

    static void MAIndex2ResID(const NS_DOMAIN::MAIndex& ma, std::string& fdn) {
        MDIndex2ResID(MdOf(ma), fdn);
        fdn += ",MA=";
        if (!IsOamNumberOmitted(ma.neId) && ma.maId != -1) {
            fdn += Number(ma.maId);
        }
        fdn += "|" + ma.maName;
    }

    static void MepIndex2ResID(const NS_DOMAIN::MEPIndex& mep, std::string& fdn) {
        MAIndex2ResID(MaOf(mep), fdn);
        fdn += ",MEP=" + Number(mep.mepId);
    }
    static void RmepIndex2ResID(const NS_DOMAIN::MEPIndex& mep, std::string& fdn) {
        MAIndex2ResID(MaOf(mep), fdn);
        fdn += ",RMEP=" + Number(mep.mepId);
    }

    static void MIPIndex2ResID(const NS_DOMAIN::MIPIndex& mip, std::string& fdn) {
        if (mip.mdId == -1) {
            NEIndex2ResID(mip, fdn);
        } else {
            MDIndex2ResID(MdOf(mip), fdn);
        }
        fdn += ",MIP=";
        if (mip.mipId != 0 && mip.mipId != -1) {
            fdn += Number(mip.mipId);
        }
        fdn += "|" + mip.mipName;
    }

    static void FillMDIndex(const Map& map, NS_DOMAIN::MDIndex& md) {
        Read(map, "NE", md.neId);
        if (!GetValueByMocLvlName("MD", map, md.mdId, 0)) {
            md.mdId = -1;
        }
        if (!GetValueByMocLvlName("MD", map, md.mdName, 1)) {
            Log(1064, "[ResIDUtil::FillMDIndex]cannot find the MDName in FDN.");
        }
    }

    static void FillMAIndex(const Map& map, NS_DOMAIN::MAIndex& ma) {
        FillParentMd(map, ma);
        if (!GetValueByMocLvlName("MA", map, ma.maId, 0)) {
            ma.maId = -1;
        }
        if (!GetValueByMocLvlName("MA", map, ma.maName, 1)) {
            Log(1113, "[ResIDUtil::FillMAIndex]cannot find the MAName in FDN.");
        }
    }

    static void FillMIPIndex(const Map& map, NS_DOMAIN::MIPIndex& mip) {
        FillParentMd(map, mip);
        if (!GetValueByMocLvlName("MIP", map, mip.mipId, 0)) {
            mip.mipId = -1;
        }
    }

    static void ResID2MDIndex(const std::string& fdn, NS_DOMAIN::MDIndex& md) { FillMDIndex(Parse(fdn), md); }
    static void ResID2MAIndex(const std::string& fdn, NS_DOMAIN::MAIndex& ma) { FillMAIndex(Parse(fdn), ma); }
    static void ResID2MIPIndex(const std::string& fdn, NS_DOMAIN::MIPIndex& mip) { FillMIPIndex(Parse(fdn), mip); }

    static int ResID2MepIndex(const std::string& fdn, NS_DOMAIN::MEPIndex& mep) {
        constexpr int FAILED = 1092092090;
        std::string rest = fdn;
        for (int count = 0; rest.find(',') != std::string::npos; ++count) {
            const std::string piece = rest.substr(0, rest.find(','));
            rest = rest.substr(rest.find(',') + 1);
            if (piece.find('=') == std::string::npos) {
                Log(1243, "[ResIDUtil::ResID2MepIndex]cannot find the equality sign in FDN.");
                return FAILED;
            }
            const std::string value = piece.substr(piece.find('=') + 1);
            if (count == 0) {
                mep.neId = ToInt(value);
            } else if (count == 1) {
                ReadNumberOrName(value, mep.mdId, mep.mdName);
            } else if (count == 2) {
                ReadNumberOrName(value, mep.maId, mep.maName);
            } else {
                Log(1238, "[ResIDUtil::ResID2MepIndex]countis invalid value.");
                return FAILED;
            }
        }
        if (rest.find('=') == std::string::npos) {
            return FAILED;
        }
        mep.mepId = ToInt(rest.substr(rest.find('=') + 1));
        return 0;
    }

private:
    static void ReadTrail(const std::string& fdn, const std::string& tag, std::string& trailResId) {
        if (fdn.find(tag) != std::string::npos) {
            trailResId = fdn.substr(fdn.find(tag));
        }
    }

    template <class Record>
    static NS_DOMAIN::MDIndex MdOf(const Record& record) {
        NS_DOMAIN::MDIndex md;
        md.neId = record.neId;
        md.mdId = record.mdId;
        md.mdName = record.mdName;
        return md;
    }

    static NS_DOMAIN::MAIndex MaOf(const NS_DOMAIN::MEPIndex& mep) {
        NS_DOMAIN::MAIndex ma;
        ma.neId = mep.neId;
        ma.mdId = mep.mdId;
        ma.mdName = mep.mdName;
        ma.maId = mep.maId;
        ma.maName = mep.maName;
        return ma;
    }

    template <class Record>
    static void FillParentMd(const Map& map, Record& record) {
        NS_DOMAIN::MDIndex md;
        md.neId = -1;
        md.mdId = 0;
        FillMDIndex(map, md);
        record.neId = md.neId;
        record.mdId = md.mdId;
        record.mdName = md.mdName;
    }

    static void ReadNumberOrName(const std::string& value, int& number, std::string& name) {
        number = ToInt(value);
        if (number == 0) {
            name = value.empty() ? "" : value.substr(1);
        }
    }

    static bool IsOamNumberOmitted(int neId) {
        if (inventory == nullptr) {
            throw NoService();
        }
        return inventory->IsOamNumberOmitted(neId);
    }

    static void Log(int line, const char* message) {
        if (logger != nullptr) {
            logger->WriteLog("resIDUtil", "unknown", line, 1, "%s", message);
        }
    }

    static std::vector<std::string> Split(const std::string& text, char separator) {
        std::vector<std::string> pieces;
        if (text.empty()) {
            return pieces;
        }
        pieces.emplace_back();
        for (const char letter : text) {
            if (letter == separator) {
                pieces.emplace_back();
            } else {
                pieces.back() += letter;
            }
        }
        return pieces;
    }

    static int ToInt(const std::string& text) {
        return static_cast<int>(static_cast<std::uint32_t>(std::strtol(text.c_str(), nullptr, 10)));
    }

    template <class Value>
    static std::string Text(Value value) {
        std::ostringstream text;
        text << value;
        return text.str();
    }
    static std::string Number(std::int32_t number) { return Text(number); }

    static Map Parse(const std::string& fdn) {
        Map map;
        Fdn2MocLvlValueMap(fdn, map);
        return map;
    }

    static void Read(const Map& map, const std::string& tag, int& field) { GetValueByMocLvlName(tag, map, field); }

    static void ReadContainers(const Map& map, NS_DOMAIN::PortIndex& port) {
        Read(map, "NE", port.neId);
        Read(map, "FR", port.shelfId);
        Read(map, "S", port.slotId);
        Read(map, "SS", port.subSlotId);
    }

    static void ReadPortLevel(const Map& map, NS_DOMAIN::PortIndex& port, bool takesEscapes) {
        port.portId = -1;
        port.isLogical = map.count("PP") == 0;
        const std::string tag = port.isLogical ? "LP" : "PP";
        if (map.count(tag) == 0 || map.at(tag).size() < 4) {
            return;
        }
        const std::vector<std::string>& values = map.at(tag);
        port.ppType = ToInt(values[0]);
        port.fbType = ToInt(values[1]);
        port.portId = ToInt(values[2]);
        std::string name = values[3];
        const auto backslash = name.find('\\');
        if (takesEscapes && backslash != std::string::npos && port.fbType == 1025 && values.size() > 4) {
            name.erase(backslash, 1);
            name += "|" + values[4];
        }
        port.portLabel = name;
        if (!port.portLabel.empty() && port.ppType == 0) {
            port.ppType = 251;
        }
    }

    static std::string PortLevel(const NS_DOMAIN::PortIndex& port, bool asLogical, const std::string& portId) {
        std::ostringstream level;
        level << (asLogical ? ",LP=" : ",PP=");
        if (port.ppType != 251 && port.ppType != 0) {
            level << port.ppType;
        }
        level << '|';
        if (port.fbType != 0) {
            level << port.fbType;
        }
        level << '|' << portId << '|' << port.portLabel;
        return level.str();
    }

    static NS_BUNDLEMGR1::CorbaConfigItems& Items() { return *NS_BUNDLEMGR1::CorbaConfigItems::Instance(); }

    static int CarrierProfile() {
        int value = 0;
        Items().GetIntItemInfo("Telvandaire", value);
        return value;
    }

    static unsigned short QueryNEType(int neId) {
        if (inventory == nullptr) {
            throw NoService();
        }
        std::uint32_t neType = 0;
        inventory->QueryNEType(neId, neType, true);
        return static_cast<unsigned short>(neType);
    }
};

}  // namespace NS_TEST
