#include <type_traits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_platform/bundlemgr.h>

#include "support/services.h"

namespace {

using NS_BUNDLEMGR1::BundleMgr;
using NS_BUNDLEMGR1::CheckIFBuf;
using NS_BUNDLEMGR1::InterfaceBuffer;
using NS_BUNDLEMGR1::NULLServiceInterface;
using NS_BUNDLEMGR1::ReadPin;
using NS_BUNDLEMGR1::ServiceInterface;
using NS_BUNDLEMGR1::ServiceObjectBase;
using NS_TEST::Registration;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using ServiceList = std::vector<std::pair<std::string, ServiceInterface*>>;

ServiceList RegisteredServices() {
    ServiceList services;
    const std::lock_guard lock(NS_BUNDLEMGR1::_g_actualmutex);
    for (const auto& object : BundleMgr::Instance()->GetServiceObjects()) {
        services.emplace_back(object.GetObjectName(), object.GetInterface());
    }
    return services;
}

TEST(BundleMgr, IsOne) {
    ASSERT_NE(BundleMgr::Instance(), nullptr);
    EXPECT_EQ(BundleMgr::Instance(), BundleMgr::Instance());
}

TEST(BundleMgr, KeepsServicesInTheOrderOfRegistration) {
    ServiceInterface first;
    ServiceInterface second;
    const Registration b("b", first);
    const Registration a("a", second);
    EXPECT_THAT(RegisteredServices(), ElementsAre(Pair("b", &first), Pair("a", &second)));
}

TEST(BundleMgr, ReplacesAServiceOfTheSameNameInItsPlace) {
    ServiceInterface first;
    ServiceInterface second;
    ServiceInterface third;
    const Registration b("b", first);
    const Registration a("a", second);
    BundleMgr::Instance()->RegisterService("b", &third);
    EXPECT_THAT(RegisteredServices(), ElementsAre(Pair("b", &third), Pair("a", &second)));
}

TEST(BundleMgr, TellsWhetherItKnewTheName) {
    ServiceInterface service;
    EXPECT_FALSE(BundleMgr::Instance()->UnregisterService("a"));
    BundleMgr::Instance()->RegisterService("a", &service);
    EXPECT_TRUE(BundleMgr::Instance()->UnregisterService("a"));
    EXPECT_FALSE(BundleMgr::Instance()->UnregisterService("a"));
    EXPECT_THAT(RegisteredServices(), IsEmpty());
}

TEST(BundleMgr, MayKnowOneServiceByTwoNames) {
    ServiceInterface service;
    const Registration a("a", service);
    const Registration b("b", service);
    EXPECT_THAT(RegisteredServices(), ElementsAre(Pair("a", &service), Pair("b", &service)));
}

TEST(ServiceObject, CarriesItselfUnderItsName) {
    ServiceInterface service;
    ServiceObjectBase object("a", &service);
    EXPECT_EQ(object.GetInterface(), &service);
    EXPECT_THAT(object.GetInterfaces(), ElementsAre(Pair("a", &object)));
}

TEST(ServiceObject, RemembersAWordForEachUser) {
    ServiceInterface service;
    ServiceObjectBase object("a", &service);
    std::array<char, 20> users{};
    int logger = 0;
    std::size_t remembering = 0;
    for (const char& user : users) {
        std::atomic<void*>* const word = object.GetMemory(&user);
        if (word == nullptr) {
            continue;
        }
        ++remembering;
        EXPECT_EQ(word->load(), nullptr) << "each user gets its own word";
        word->store(&logger);
        EXPECT_EQ(object.GetMemory(&user), word) << "the same word at every call";
    }
    EXPECT_GE(remembering, 2U);
    EXPECT_LT(remembering, users.size()) << "late users get no word";
}

TEST(InterfaceBuffer, IsMadeOnceForEachName) {
    InterfaceBuffer* const buffer = CheckIFBuf("buffer of a test");
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(buffer->GetName(), "buffer of a test");
    EXPECT_EQ(CheckIFBuf(std::string("buffer of a test")), buffer);
    EXPECT_NE(CheckIFBuf("another buffer of a test"), buffer);
}

TEST(InterfaceBuffer, AnswersOnceTheRegistryWasSearched) {
    InterfaceBuffer* const buffer = CheckIFBuf("buffer that is searched");
    ReadPin pin;
    InterfaceBuffer::Entry entry;
    EXPECT_FALSE(buffer->First(pin, entry)) << "the registry was not searched yet";
    {
        const std::lock_guard lock(NS_BUNDLEMGR1::_g_actualmutex);
        buffer->SetSearched();
    }
    EXPECT_TRUE(buffer->First(pin, entry)) << "the buffer knows that there is no service";
    EXPECT_EQ(entry.object, nullptr);
}

TEST(InterfaceBuffer, HandsOutTheFirstThatWasAppended) {
    InterfaceBuffer* const buffer = CheckIFBuf("buffer of two");
    ServiceInterface first;
    ServiceInterface second;
    ServiceObjectBase firstObject("first", &first);
    ServiceObjectBase secondObject("second", &second);
    {
        const std::lock_guard lock(NS_BUNDLEMGR1::_g_actualmutex);
        buffer->Append({&firstObject, &first});
        buffer->Append({&secondObject, &second});
    }
    ReadPin pin;
    InterfaceBuffer::Entry entry;
    EXPECT_TRUE(buffer->First(pin, entry));
    EXPECT_EQ(entry.object, &firstObject);
    EXPECT_EQ(entry.interface, &first);
    EXPECT_TRUE(ReadPin::IsPinned(&firstObject));
    const std::lock_guard lock(NS_BUNDLEMGR1::_g_actualmutex);
    buffer->Forget();
    EXPECT_FALSE(buffer->First(pin, entry));
}

TEST(InterfaceBuffer, IsEmptiedWhenAServiceComesOrGoes) {
    InterfaceBuffer* const buffer = CheckIFBuf("buffer that is emptied");
    ReadPin pin;
    InterfaceBuffer::Entry entry;
    ServiceInterface service;
    const auto search = [buffer] {
        const std::lock_guard lock(NS_BUNDLEMGR1::_g_actualmutex);
        buffer->SetSearched();
    };
    search();
    BundleMgr::Instance()->RegisterService("a", &service);
    EXPECT_FALSE(buffer->First(pin, entry));
    search();
    BundleMgr::Instance()->RegisterService("a", &service);
    EXPECT_FALSE(buffer->First(pin, entry));
    search();
    BundleMgr::Instance()->UnregisterService("a");
    EXPECT_FALSE(buffer->First(pin, entry));
    search();
    BundleMgr::Instance()->UnregisterService("a");
    EXPECT_TRUE(buffer->First(pin, entry)) << "nothing has changed";
}

TEST(NULLServiceInterface, AnswersForAServiceThatIsNotThere) {
    auto* const nobody = new NULLServiceInterface;
    ServiceInterface* const asService = nobody;
    EXPECT_EQ(asService->GetSelf(), asService);
    EXPECT_STREQ(asService->GetName(), "NULLServiceInterface!");
    EXPECT_EQ(asService->GetState(), 0);
    asService->Release();  // deletes it; else the leak sanitizer reports it
}

TEST(NULLServiceInterface, IsAServiceWhoseFinalBaseIsHidden) {
    static_assert(std::is_base_of_v<ServiceInterface, NULLServiceInterface>);
    static_assert(std::is_base_of_v<NS_BUNDLEMGR1::FinalClass, NULLServiceInterface>);
    static_assert(!std::is_convertible_v<NULLServiceInterface*, NS_BUNDLEMGR1::FinalClass*>);
    static_assert(!std::is_default_constructible_v<NS_BUNDLEMGR1::FinalClass>);
}

}  // namespace
