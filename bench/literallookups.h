/// The plainest code for each predicate and look-up, which the library's own is compared with. It makes the key at
/// every call, searches the service by its name, keeps a table in an ordered map or a list, and knows nothing of
/// threads.
///
/// The functions bear the names of the library's. They are a shared library of their own, so that a call costs what a
/// call of the library costs: nothing is inlined into the benchmark.
#pragma once

#include <map>
#include <string>

#include <kx_domain_util/domainindex.h>

namespace NS_BENCH::NS_LITERAL {

// ---- Predicates -----------------------------------------------------------------------------------------------------

bool IsPTN41(unsigned short neType);
bool IsPTN31(unsigned short neType);
bool IsPTN470(unsigned short neType);
bool IsKLVByNEType(unsigned short neType);

/// Whether `neType` is in the list of NE types of this name, as the host loaded it.
bool IsInNETypeList(const char* domain, unsigned short neType);
/// Whether `neType` is in the list of equipment types of this name, as the host loaded it.
bool IsInEquipmentTypeList(const char* domain, unsigned short neType);

bool IsIPServiceNE(unsigned short neType);
bool IsKLVNE(unsigned short neType);
bool IsTransMultiSubShelfNE(unsigned long neId, unsigned short neType);

// ---- Tables ---------------------------------------------------------------------------------------------------------

std::string GetFBTypeName(int fbType);
bool IsPTNAIDFBType(int fbType);
bool IsPortObjByFbType(const int& fbType, const int& kind);
bool IsLogicalPortByType(int type);
std::string GetDomainStrByID(const unsigned int& domainId);

void FBType2InterfaceLevel(int& level, const int& fbType);
void InterfaceLevel2FBType(int& fbType, const int& level);
unsigned short GetBidirFBType(const unsigned short& fbType);

void InterfaceCTPId2TMFName(const unsigned long& ctpId, std::string& name);
void InterfaceTMFCTPName2ID(const std::string& name, unsigned long& ctpId);
bool SetTpNoToLocation(int& location, const int& level, const int& tpNo);
bool GetTpNoFromLocation(const int& location, const int& level, int& tpNo);
bool SetTpNo(NS_DOMAIN::TPIndex& tp, const int& level, const int& tpNo);
int GetTpNo(const NS_DOMAIN::TPIndex& tp, const int& level);

bool IsTiRoadmOpticalBoard(unsigned long boardType);
int GetPFMPacketSize();

// ---- Texts and the filter -------------------------------------------------------------------------------------------

bool IsServiceFDN(const std::string& moc);
std::string GetMoc(const std::string& fdn);
void GetSplitePPDataByLine(std::map<int, std::string>& out, const std::string& line);
void GetSplitePATHDataByLine(std::map<int, int>& out, const std::string& path);

/// Whether a filter with the white list of `Surroundings` holds the notification back.
bool IsFilteNtf(int notificationId);

}  // namespace NS_BENCH::NS_LITERAL
