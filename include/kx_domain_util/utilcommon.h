#pragma once

#include <atomic>
#include <map>
#include <string>
#include <vector>

#include <kx_domain_util/domainindex.h>
#include <kx_domain_util/export.h>

namespace NS_UTIL {

/// The constant layer and naming tables of the system, and text helpers that its bundles share.
///
/// Look-ups take the output first and the input second, unless stated otherwise. A miss is no error; each look-up says
/// what it gives then. Threads: any; the tables are complete when `Instance` first returns, and only read from then on.
/// Exceptions: std::bad_alloc, and what a log service throws while it writes a record.
class KX_DOMAIN_UTIL_API UtilCommon {
public:
    /// The one instance, made with its tables on the first call. Null only if the process-wide lock cannot be taken.
    static UtilCommon* Instance();
    /// Deletes the instance. Does not wait for threads that still use it.
    static void Destroy();

    UtilCommon(const UtilCommon&) = delete;
    UtilCommon& operator=(const UtilCommon&) = delete;

    // ---- Text helpers -----------------------------------------------------------------------------------------------

    // Those up to `IsSupportCfgItem` are answered by the platform (`selfutilcommon.h`).

    /// Splits `text` at `separator` into items NAME=value and adds each to `out`. Items without "=" are skipped; the
    /// first of a repeated name wins, and so does what `out` held before. An empty `separator` splits nothing.
    void GetSpliteFDNData(std::map<std::string, std::string>& out, const std::string& text,
                          const std::string& separator) const;
    /// Another name of `GetSpliteFDNData`.
    void GetSplitNameValueMapbyTag(std::map<std::string, std::string>& out, const std::string& text,
                                   const std::string& separator) const;
    /// Copies the value under `key` into `value`; false, and `value` untouched, if there is none.
    bool GetDataFromMap(const std::map<std::string, std::string>& map, const std::string& key,
                        std::string& value) const;
    /// The same for numbers as keys.
    bool GetDataFromMap(const std::map<int, std::string>& map, int key, std::string& value) const;
    /// Reads the value under `name` by `Str2Int` into `value`; false, and `value` untouched, if there is none.
    bool GetIntegerValueByName(const std::map<std::string, std::string>& map, const std::string& name,
                               int& value) const;

    /// Copies the configuration item `item` into `value`; false, and `value` untouched, if it is missing.
    bool GetSupportCfgItem(const std::string& item, std::string& value) const;
    /// Whether the configuration item `item` exists.
    bool IsSupportCfgItem(const std::string& item) const;

    /// Returns the MOC of `fdn`, by other rules than `ResIDUtil::GetMOCFromFDN`:
    ///
    /// - the text between the last "," (or the beginning) and the last "=";
    /// - if that text is "CLI_NAME" after a ",": "PP" if "PP=" occurs anywhere, else "LP" if "LP=" does, else empty;
    /// - if the last level has no "=": "OS" if the text before the last "=" (or all of it, without one) is "OS" or
    ///   "SYSTEM", else empty.
    std::string GetMoc(const std::string& fdn) const;

    /// Splits `line` at "|" into fields 0 to 2 and the rest, 3. An empty field becomes "-1", an empty rest stays empty.
    /// After a missing separator the search starts at the line's beginning again: "a|b" gives 0 = a, 2 = a, 3 = b, and
    /// no field 1. Fields overwrite what `out` held; other keys stay.
    void GetSplitePPDataByLine(std::map<int, std::string>& out, const std::string& line) const;
    /// Another name of `GetSplitePPDataByLine`.
    void GetSpliteFBDataByLine(std::map<int, std::string>& out, const std::string& line) const;
    /// Reads a path, "ODU2:1-ODU0:8", into `out`: interface level of the client rate (upper or lower case) to number.
    /// Items without ":" or of no known rate are skipped; the last of a repeated rate wins.
    void GetSplitePATHDataByLine(std::map<int, int>& out, const std::string& line) const;

    /// How many bytes of performance data are read at a time: configuration item "PfmFrameRdSize", read at every call;
    /// 2000 if it is missing, no integer, negative or above 6000.
    int GetPFMPacketSize() const;

    // ---- FB types and interface levels ------------------------------------------------------------------------------

    /// The interface level on which FBs of this type sit; the type's own number if it has none.
    void FBType2InterfaceLevel(int& level, const int& fbType) const;
    /// The canonical FB type of an interface level; the level's own number if it has none.
    void InterfaceLevel2FBType(int& fbType, const int& level) const;
    /// The bidirectional FB type that a unidirectional one belongs to; `fbType` itself if it belongs to none.
    unsigned short GetBidirFBType(const unsigned short& fbType) const;

    // ---- CTP names and TP numbers -----------------------------------------------------------------------------------

    /// The TMF name of a reserved CTP, "E0" for 65535 to "E11" for 65524; empty for any other id. Callers exist for
    /// both orders of the arguments.
    void InterfaceCTPId2TMFName(const unsigned long& ctpId, std::string& name) const;
    /// The same with the output first.
    void InterfaceCTPId2TMFName(std::string& name, const unsigned long& ctpId) const {
        InterfaceCTPId2TMFName(ctpId, name);
    }
    /// The id of the CTP of this TMF name, case counts; 0 for any other name. Callers exist for both orders of the
    /// arguments.
    void InterfaceTMFCTPName2ID(const std::string& name, unsigned long& ctpId) const;
    /// The same with the output first.
    void InterfaceTMFCTPName2ID(unsigned long& ctpId, const std::string& name) const {
        InterfaceTMFCTPName2ID(name, ctpId);
    }

    /// Puts a TP number, its low 16 bits, and the FB type of its interface level into a location word. False, and the
    /// word untouched, if the word is taken (above 0). A negative word is free, but keeps the bits that it has.
    bool SetTpNoToLocation(int& location, const int& level, const int& tpNo) const;
    /// The TP number in a location word. False, and `tpNo` untouched, if the word's FB type sits on another level.
    bool GetTpNoFromLocation(const int& location, const int& level, int& tpNo) const;
    /// Puts a TP number into the first free one of the TP's four location words: `vc4Id`, `vc12Id`, `vc3Id`, `vc11Id`.
    /// Returns false and writes nothing if `tpNo` is below 1 or all words are taken. Keeps the low 16 bits of `tpNo`,
    /// so 65536 reads back as 0.
    bool SetTpNo(NS_DOMAIN::TPIndex& tp, const int& level, const int& tpNo) const;
    /// The TP number of this level in the TP's location words; 0 if there is none.
    int GetTpNo(const NS_DOMAIN::TPIndex& tp, const int& level) const;

    // ---- Client rates and optical boards ----------------------------------------------------------------------------

    /// Adds the client rates to `rates`, name to interface level; a name that is there already keeps its level.
    void InitClientRateMap(std::map<std::string, unsigned int>& rates) const;
    /// Whether a board type is that of an optical board of the ROADM kind.
    bool IsTiRoadmOpticalBoard(unsigned long boardType) const;

    // ---- Filling of the tables: the constructor calls these in this order. Not while others use the instance --------

    /// For `FBType2InterfaceLevel`.
    void InitFbType2ILMap();
    /// For `InterfaceLevel2FBType`.
    void InitIL2FbTypeMap();
    /// For `IsTiRoadmOpticalBoard`. Appends the board types, so calling it again doubles them.
    void InitOpticalBoardList();
    /// For `InterfaceCTPId2TMFName`.
    void InitCTPId2TMFNameMap();
    /// For `InterfaceTMFCTPName2ID`.
    void InitTMFCTPName2ID();

private:
    UtilCommon();
    ~UtilCommon() = default;

    static std::atomic<UtilCommon*> m_pInstance;

    std::map<int, int> m_mapFbType2IL;
    std::map<int, int> m_mapIL2FbType;
    std::vector<unsigned long> m_vecOpticalBoard;
    std::map<unsigned long, std::string> m_mapCTPId2TMFName;
    std::map<std::string, unsigned long> m_mapTMFCTPName2ID;
};

}  // namespace NS_UTIL
