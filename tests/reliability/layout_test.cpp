/// The layout that programs were compiled with: fields of records, and virtual functions of services. A change here
/// needs another `KX_SOVERSION`. The numbers are those of x86-64 with the strings of libstdc++.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <kx_domain_util/domainindex.h>
#include <kx_platform/dawsvcinterface.h>
#include <kx_platform/inventorybufif.h>
#include <kx_platform/logsvcinterface.h>

namespace {

using namespace NS_DOMAIN;
using namespace NS_SERVICE;
using NS_BUNDLEMGR1::ServiceInterface;

struct Anything {
    template <class Value>
    operator Value() const;  // never called
};

template <class Record, std::size_t... PLACES>
constexpr bool TakesElements(std::index_sequence<PLACES...>) {
    return requires {
        Record{(static_cast<void>(PLACES), Anything{})...};
    };
}

// How many fields an aggregate has; its base counts as one.
template <class Record, std::size_t COUNT = 1>
constexpr std::size_t CountElements() {
    if constexpr (TakesElements<Record>(std::make_index_sequence<COUNT + 1>())) {
        return CountElements<Record, COUNT + 1>();
    } else {
        return COUNT;
    }
}
template <class Record>
constexpr std::size_t ELEMENTS = CountElements<Record>();

template <class Record>
class Layout {
public:
    explicit Layout(std::size_t size) { EXPECT_EQ(sizeof(Record), size); }

    // Compiles only if the field has exactly this type.
    template <class Type>
    const Layout& Has(std::type_identity_t<Type> Record::*field, std::ptrdiff_t offset) const {
        const auto address = [](const auto& object) { return reinterpret_cast<const char*>(&object); };
        EXPECT_EQ(address(m_record.*field) - address(m_record), offset);
        return *this;
    }

private:
    Record m_record;
};

TEST(Layout, OfOSIndex) {
    using Record = OSIndex;
    static_assert(ELEMENTS<Record> == 1);
    Layout<Record>(4).Has<std::int32_t>(&Record::osId, 0);
}

TEST(Layout, OfONEIndex) {
    using Record = ONEIndex;
    static_assert(ELEMENTS<Record> == 2);
    Layout<Record>(8).Has<std::int32_t>(&Record::reserved, 0).Has<std::int32_t>(&Record::oneId, 4);
}

TEST(Layout, OfNEIndex) {
    using Record = NEIndex;
    static_assert(ELEMENTS<Record> == 2);
    Layout<Record>(8).Has<std::int32_t>(&Record::reserved, 0).Has<std::int32_t>(&Record::neId, 4);
}

TEST(Layout, OfShelfIndex) {
    using Record = ShelfIndex;
    static_assert(ELEMENTS<Record> == 3);
    Layout<Record>(12)
        .Has<std::int32_t>(&Record::reserved, 0)
        .Has<std::int32_t>(&Record::neId, 4)
        .Has<std::int32_t>(&Record::shelfId, 8);
}

TEST(Layout, OfSlotIndex) {
    using Record = SlotIndex;
    static_assert(ELEMENTS<Record> == 5);
    Layout<Record>(20)
        .Has<std::int32_t>(&Record::reserved, 0)
        .Has<std::int32_t>(&Record::neId, 4)
        .Has<std::int32_t>(&Record::shelfId, 8)
        .Has<std::int32_t>(&Record::slotId, 12)
        .Has<std::int32_t>(&Record::subSlotId, 16);
}

TEST(Layout, OfCardIndex) {
    using Record = CardIndex;
    static_assert(ELEMENTS<Record> == 4);
    Layout<Record>(16)
        .Has<std::int32_t>(&Record::reserved, 0)
        .Has<std::int32_t>(&Record::neId, 4)
        .Has<std::int32_t>(&Record::shelfId, 8)
        .Has<std::int32_t>(&Record::slotId, 12);
}

TEST(Layout, OfPortIndex) {
    using Record = PortIndex;
    static_assert(ELEMENTS<Record> == 13);
    Layout<Record>(80)
        .Has<std::int32_t>(&Record::reserved, 0)
        .Has<std::int32_t>(&Record::reserved2, 4)
        .Has<std::int32_t>(&Record::neId, 8)
        .Has<std::int32_t>(&Record::shelfId, 12)
        .Has<std::int32_t>(&Record::slotId, 16)
        .Has<std::int32_t>(&Record::subSlotId, 20)
        .Has<std::int32_t>(&Record::portId, 24)
        .Has<std::int32_t>(&Record::ppType, 28)
        .Has<std::int32_t>(&Record::fbType, 32)
        .Has<std::string>(&Record::portLabel, 40)
        .Has<bool>(&Record::isLogical, 72)
        .Has<bool>(&Record::reservedFlag, 73)
        .Has<std::int32_t>(&Record::reservedValue, 76);
}

TEST(Layout, OfCtpKey_T) {
    using Record = CtpKey_T;
    static_assert(ELEMENTS<Record> == 9);
    Layout<Record>(168)
        .Has<std::int32_t>(&Record::neId, 0)
        .Has<std::int32_t>(&Record::vrId, 4)
        .Has<std::int32_t>(&Record::apValue1, 8)
        .Has<std::int32_t>(&Record::apValue2, 12)
        .Has<std::string>(&Record::apText, 16)
        .Has<PortIndex>(&Record::port, 48)
        .Has<std::int32_t>(&Record::fbType, 128)
        .Has<std::int32_t>(&Record::subIfId, 132)
        .Has<std::string>(&Record::fdnText, 136);
}

TEST(Layout, OfTPIndex) {
    using Record = TPIndex;
    static_assert(ELEMENTS<Record> == 15);
    Layout<Record>(88)
        .Has<std::int32_t>(&Record::reserved, 0)
        .Has<std::int32_t>(&Record::neId, 4)
        .Has<std::int32_t>(&Record::shelfId, 8)
        .Has<std::int32_t>(&Record::slotId, 12)
        .Has<std::int32_t>(&Record::subSlotId, 16)
        .Has<std::int32_t>(&Record::portId, 20)
        .Has<std::int32_t>(&Record::ppType, 24)
        .Has<std::int32_t>(&Record::fbType, 28)
        .Has<std::string>(&Record::portLabel, 32)
        .Has<std::int32_t>(&Record::reserved2, 64)
        .Has<std::int32_t>(&Record::vc4Id, 68)
        .Has<std::int32_t>(&Record::vc12Id, 72)
        .Has<std::int32_t>(&Record::vc3Id, 76)
        .Has<std::int32_t>(&Record::vc11Id, 80)
        .Has<bool>(&Record::isLogical, 84);
}

TEST(Layout, OfPWIndex) {
    using Record = PWIndex;
    static_assert(ELEMENTS<Record> == 2);
    Layout<Record>(40).Has<std::int32_t>(&Record::neId, 0).Has<std::string>(&Record::resId, 8);
}

TEST(Layout, OfPWSwitchIndex) {
    using Record = PWSwitchIndex;
    static_assert(ELEMENTS<Record> == 2);
    Layout<Record>(40).Has<std::int32_t>(&Record::neId, 0).Has<std::string>(&Record::resId, 8);
}

TEST(Layout, OfVPNTrailIndex) {
    using Record = VPNTrailIndex;
    static_assert(ELEMENTS<Record> == 2);
    Layout<Record>(40).Has<std::string>(&Record::trailResId, 0).Has<std::int32_t>(&Record::trailType, 32);
}

TEST(Layout, OfTunnelTrailIndex) {
    using Record = TunnelTrailIndex;
    static_assert(ELEMENTS<Record> == 1);
    Layout<Record>(32).Has<std::string>(&Record::trailResId, 0);
}

TEST(Layout, OfPWTrailIndex) {
    using Record = PWTrailIndex;
    static_assert(ELEMENTS<Record> == 1);
    Layout<Record>(32).Has<std::string>(&Record::trailResId, 0);
}

TEST(Layout, OfTNPIndex_T) {
    using Record = TNPIndex_T;
    static_assert(ELEMENTS<Record> == 1);
    Layout<Record>(32).Has<std::string>(&Record::trailResId, 0);
}

TEST(Layout, OfServiceIndex) {
    using Record = ServiceIndex;
    static_assert(ELEMENTS<Record> == 4);
    Layout<Record>(48)
        .Has<std::int32_t>(&Record::neId, 0)
        .Has<std::string>(&Record::resId, 8)
        .Has<std::int32_t>(&Record::svcId, 40)
        .Has<std::int32_t>(&Record::svcType, 44);
}

TEST(Layout, OfTunnelIndex) {
    using Record = TunnelIndex;
    static_assert(ELEMENTS<Record> == 10);
    Layout<Record>(184)
        .Has<std::int32_t>(&Record::neId, 0)
        .Has<std::int32_t>(&Record::tunnelInt4, 4)
        .Has<std::string>(&Record::tunnelText2, 8)
        .Has<std::string>(&Record::tunnelText3, 40)
        .Has<std::int32_t>(&Record::tunnelInt6, 72)
        .Has<std::int32_t>(&Record::tunnelInt0, 76)
        .Has<std::int32_t>(&Record::tunnelInt1, 80)
        .Has<std::string>(&Record::tunnelText5, 88)
        .Has<std::string>(&Record::tunnelText5Copy, 120)
        .Has<std::string>(&Record::resId, 152);
}

TEST(Layout, OfTDIndex) {
    using Record = TDIndex;
    static_assert(ELEMENTS<Record> == 3);
    Layout<Record>(24)
        .Has<std::int32_t>(&Record::reserved, 0)
        .Has<std::int64_t>(&Record::neId, 8)
        .Has<std::int64_t>(&Record::tdId, 16);
}

TEST(Layout, OfUniResID) {
    using Record = UniResID;
    static_assert(ELEMENTS<Record> == 4);
    Layout<Record>(104)
        .Has<std::string>(&Record::uniText1, 0)
        .Has<std::string>(&Record::uniText2, 32)
        .Has<std::int32_t>(&Record::uniNum, 64)
        .Has<std::string>(&Record::uniText3, 72);
}

TEST(Layout, OfMDIndex) {
    using Record = MDIndex;
    static_assert(ELEMENTS<Record> == 3);
    Layout<Record>(48)
        .Has<std::int32_t>(&Record::reserved, 0)
        .Has<std::int32_t>(&Record::neId, 4)
        .Has<std::int32_t>(&Record::mdId, 8)
        .Has<std::string>(&Record::mdName, 16);
}

TEST(Layout, OfMAIndex) {
    using Record = MAIndex;
    static_assert(ELEMENTS<Record> == 5);
    Layout<Record>(88)
        .Has<std::int32_t>(&Record::reserved, 0)
        .Has<std::int32_t>(&Record::neId, 4)
        .Has<std::int32_t>(&Record::mdId, 8)
        .Has<std::string>(&Record::mdName, 16)
        .Has<std::int32_t>(&Record::maId, 48)
        .Has<std::string>(&Record::maName, 56);
}

TEST(Layout, OfMEPIndex) {
    using Record = MEPIndex;
    static_assert(ELEMENTS<Record> == 6);
    Layout<Record>(96)
        .Has<std::int32_t>(&Record::reserved, 0)
        .Has<std::int32_t>(&Record::neId, 4)
        .Has<std::int32_t>(&Record::mdId, 8)
        .Has<std::string>(&Record::mdName, 16)
        .Has<std::int32_t>(&Record::maId, 48)
        .Has<std::string>(&Record::maName, 56)
        .Has<std::int32_t>(&Record::mepId, 88);
}

TEST(Layout, OfMIPIndex) {
    using Record = MIPIndex;
    static_assert(ELEMENTS<Record> == 5);
    Layout<Record>(88)
        .Has<std::int32_t>(&Record::reserved, 0)
        .Has<std::int32_t>(&Record::neId, 4)
        .Has<std::int32_t>(&Record::mdId, 8)
        .Has<std::string>(&Record::mdName, 16)
        .Has<std::int32_t>(&Record::mipId, 48)
        .Has<std::string>(&Record::mipName, 56);
}

TEST(Layout, OfTEUniResID) {
    using Record = NS_DOMAIN_SOUTHAPISET::TEUniResID;
    static_assert(ELEMENTS<Record> == 4);
    Layout<Record>(104)
        .Has<std::string>(&Record::uniText1, 0)
        .Has<std::string>(&Record::uniText2, 32)
        .Has<std::int32_t>(&Record::uniNum, 64)
        .Has<std::string>(&Record::uniText3, 72);
}

// The place of a virtual function among those of its class. The Itanium C++ ABI keeps its offset in bytes in the first
// word of the pointer to the function. The mark of a virtual function is the lowest bit of that word, and on 64-bit ARM
// that of the second one.
template <class Signature, class Service>
std::size_t PlaceOf(Signature Service::*function) {
    std::size_t words[2] = {};
    static_assert(sizeof(function) == sizeof(words));
    std::memcpy(words, &function, sizeof(words));
#ifdef __aarch64__
    EXPECT_EQ(words[1], 1U) << "the function is not virtual";
#else
    EXPECT_EQ(words[0] % sizeof(void*), 1U) << "the function is not virtual";
#endif
    return words[0] / sizeof(void*);
}

// How many virtual functions a class has: the place of the next one.
template <class Service>
struct Extended : Service {
    virtual void Next() = 0;
};
template <class Service>
std::size_t CountOf() {
    return PlaceOf<void()>(&Extended<Service>::Next);
}

// Each class begins with its two destructors.
TEST(VirtualFunctions, OfServiceInterface) {
    EXPECT_EQ(PlaceOf<ServiceInterface*()>(&ServiceInterface::GetSelf), 2U);
    EXPECT_EQ(PlaceOf<void()>(&ServiceInterface::Release), 3U);
    EXPECT_EQ(PlaceOf<const char*() const>(&ServiceInterface::GetName), 4U);
    EXPECT_EQ(PlaceOf<int() const>(&ServiceInterface::GetState), 5U);
    EXPECT_EQ(CountOf<ServiceInterface>(), 6U);
}

TEST(VirtualFunctions, OfInventoryBufif) {
    EXPECT_EQ(PlaceOf<bool(std::int64_t, std::uint32_t&, bool)>(&InventoryBufif::QueryNEType), 6U);
    EXPECT_EQ(PlaceOf<bool(int)>(&InventoryBufif::IsOamNumberOmitted), 7U);
    EXPECT_EQ(PlaceOf<bool(unsigned short)>(&InventoryBufif::IsIPServiceNEType), 8U);
    EXPECT_EQ(PlaceOf<bool(unsigned short)>(&InventoryBufif::IsKLVNEType), 9U);
    EXPECT_EQ((PlaceOf<bool(unsigned long, unsigned short)>(&InventoryBufif::IsTransMultiSubShelf)), 10U);
    EXPECT_EQ(CountOf<InventoryBufif>(), 11U);
}

TEST(VirtualFunctions, OfConfigObject) {
    EXPECT_EQ((PlaceOf<bool(const std::string&, int&)>(&ConfigObject::GetIntItemInfo)), 2U);
    EXPECT_EQ(CountOf<ConfigObject>(), 3U);
}

TEST(VirtualFunctions, OfDAWSvcInterface) {
    EXPECT_EQ((PlaceOf<ConfigObject*(const std::string&, const std::string&)>(&DAWSvcInterface::GetConfiguration)), 6U);
    EXPECT_EQ(CountOf<DAWSvcInterface>(), 7U);
}

TEST(VirtualFunctions, OfModuleLogger) {
    using WriteLog = void(const std::string&, const std::string&, int, int, const char*, ...);
    EXPECT_EQ(PlaceOf<WriteLog>(&ModuleLogger::WriteLog), 2U);
    EXPECT_EQ(CountOf<ModuleLogger>(), 3U);
}

TEST(VirtualFunctions, OfLogSvcInterface) {
    using GetModuleLogger = ModuleLogger*(const std::string&, const std::string&, const std::string&);
    EXPECT_EQ(PlaceOf<GetModuleLogger>(&LogSvcInterface::GetModuleLogger), 6U);
    EXPECT_EQ(CountOf<LogSvcInterface>(), 7U);
}

}  // namespace
