#include "catalogue/vocabulary.h"

#include <algorithm>
#include <span>

#include <kx_domain_util/constanttables.h>
#include <kx_domain_util/fbtype.h>
#include <kx_domain_util/utilcommon.h>

#include "bindings/c/guard.h"

using namespace NS_KX;
using namespace NS_KX::NS_C;

namespace {

// Puts what `look` finds into `*answer`. The tables are there unless a lock of the system fails.
template <class Look>
kx_status LookUp(int32_t* answer, Look look) noexcept {
    return Guarded([&]() -> kx_status {
        if (answer == nullptr) {
            return KX_BAD_ARGUMENT;
        }
        if (NS_UTIL::UtilCommon::Instance() == nullptr) {
            return KX_FAILED;
        }
        const std::optional<int> found = look();
        if (!found) {
            return KX_NOT_THERE;
        }
        *answer = *found;
        return KX_OK;
    });
}

// The same for a name, of which `rows` have one that lasts.
template <class Row, class Look>
kx_status LookUpName(const char** answer, std::span<const Row> rows, Look look) noexcept {
    return Guarded([&]() -> kx_status {
        if (answer == nullptr) {
            return KX_BAD_ARGUMENT;
        }
        if (NS_UTIL::UtilCommon::Instance() == nullptr) {
            return KX_FAILED;
        }
        const std::optional<std::string> found = look();
        const auto row = std::find_if(rows.begin(), rows.end(), [&](const Row& each) { return each.name == found; });
        if (row == rows.end()) {
            return KX_NOT_THERE;
        }
        *answer = row->name.data();
        return KX_OK;
    });
}

// False if there is no memory for the table.
template <class Ask>
bool IsTrue(Ask ask) noexcept {
    bool answer = false;
    Guarded([&]() -> kx_status {
        answer = ask();
        return KX_OK;
    });
    return answer;
}

}  // namespace

// ---- FB types -------------------------------------------------------------------------------------------------------

kx_status kx_fb_name(int32_t fb_type, const char** name) {
    return LookUpName(name, NS_UTIL::GetFbTypeNameRows(), [&] { return NameOfFbType(fb_type); });
}

kx_status kx_fb_level(int32_t fb_type, int32_t* level) {
    return LookUp(level, [&] { return LevelOfFbType(fb_type); });
}

kx_status kx_fb_bidir(int32_t fb_type, int32_t* bidir_fb_type) {
    return LookUp(bidir_fb_type, [&] { return BidirOfFbType(fb_type); });
}

bool kx_fb_has_ptn_aid(int32_t fb_type) {
    return IsTrue([&] { return NS_UTIL::IsPTNAIDFBType(fb_type); });
}

bool kx_fb_is_port_object(int32_t fb_type, int32_t kind) {
    return IsTrue([&] { return NS_UTIL::IsPortObjByFbType(fb_type, kind); });
}

bool kx_fb_is_logical_port(int32_t fb_type) {
    return IsTrue([&] { return NS_UTIL::IsLogicalPortByType(fb_type); });
}

// ---- Interface levels -----------------------------------------------------------------------------------------------

kx_status kx_level_fb_type(int32_t level, int32_t* fb_type) {
    return LookUp(fb_type, [&] { return FbTypeOfLevel(level); });
}

kx_status kx_level_rate(int32_t level, const char** rate) {
    return LookUpName(rate, NS_UTIL::GetClientRateRows(), [&] { return RateOfLevel(level); });
}

kx_status kx_rate_level(const char* rate, int32_t* level) {
    return rate != nullptr ? LookUp(level, [&] { return LevelOfRate(rate); }) : KX_BAD_ARGUMENT;
}

// ---- CTP names ------------------------------------------------------------------------------------------------------

kx_status kx_ctp_name(int32_t ctp_id, const char** name) {
    return LookUpName(name, NS_UTIL::GetCtpNameRows(), [&] { return NameOfCtp(ctp_id); });
}

kx_status kx_ctp_id(const char* name, int32_t* ctp_id) {
    return name != nullptr ? LookUp(ctp_id, [&] { return IdOfCtp(name); }) : KX_BAD_ARGUMENT;
}
