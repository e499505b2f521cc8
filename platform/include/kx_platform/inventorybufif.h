#pragma once

#include <cstdint>

#include <kx_platform/bundlemgr.h>
#include <kx_platform/export.h>

namespace NS_SERVICE {

/// The inventory service: what is known of an NE and of its type. Registered as "InventoryBufif". Called from any
/// thread, several at once. An exception of an operation passes to whoever called the library.
class KX_PLATFORM_API InventoryBufif : public NS_BUNDLEMGR1::ServiceInterface {
public:
    ~InventoryBufif() override;

    /// Puts the NE type of the NE `neId` into the low 16 bits of `neType`; false, and `neType` untouched, for an
    /// unknown NE. The library passes true as `flag`.
    virtual bool QueryNEType(std::int64_t neId, std::uint32_t& neType, bool flag) = 0;
    /// Whether the identifiers of maintenance domains and associations of this NE leave their numbers out.
    virtual bool IsOamNumberOmitted(int neId) = 0;
    /// Whether NEs of this type offer IP services.
    virtual bool IsIPServiceNEType(unsigned short neType) = 0;
    /// Whether NEs of this type belong to the KLV family.
    virtual bool IsKLVNEType(unsigned short neType) = 0;
    /// Whether this transmission NE has several sub-shelves.
    virtual bool IsTransMultiSubShelf(unsigned long neId, unsigned short neType) = 0;
};

}  // namespace NS_SERVICE
