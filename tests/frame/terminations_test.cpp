// For each operation that looks a service up: which exceptions of the look-up end the process, and which pass?
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include <kx_domain_util/netype.h>
#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/processexception.h>
#include <kx_domain_util/resIDUtil.h>
#include <kx_domain_util/utilcommon.h>

#include "support/childprocess.h"
#include "support/failinglocks.h"
#include "support/services.h"

namespace {

using NS_BUNDLEMGR1::BundleMgr;
using NS_TEST::Configuration;
using NS_TEST::FailingLocks;
using NS_TEST::InChildProcess;
using NS_TEST::Registration;
using NS_UTIL::InterfaceNotExistException;
using NS_UTIL::NtfFilter;
using NS_UTIL::ResIDUtil;
using NS_UTIL::UtilCommon;

// ---- The operations -------------------------------------------------------------------------------------------------

template <class Record>
Record OnSlot() {
    Record record;
    record.neId = 12;
    record.slotId = 3;
    return record;
}

NS_DOMAIN::CtpKey_T KeyOnSlot() {
    NS_DOMAIN::CtpKey_T key;
    key.port = OnSlot<NS_DOMAIN::PortIndex>();
    key.neId = 12;
    return key;
}

// An operation that looks a service up; isLog if it only writes a log record, and does not need the service.
struct LookUp {
    const char* name;
    bool isLog;
    void (*call)();
};

void PrintTo(const LookUp& lookUp, std::ostream* out) {
    *out << lookUp.name;
}

const LookUp LOOK_UPS[] = {
    {"IsIPServiceNE", false, [] { NS_UTIL::IsIPServiceNE(7); }},
    {"IsKLVNE", false, [] { NS_UTIL::IsKLVNE(7); }},
    {"IsTransMultiSubShelfNE", false, [] { NS_UTIL::IsTransMultiSubShelfNE(12, 7); }},
    {"CardIndex2ResID", false,
     [] {
         std::string fdn;
         ResIDUtil::CardIndex2ResID(OnSlot<NS_DOMAIN::CardIndex>(), fdn);
     }},
    {"PortIndex2ResID", false,
     [] {
         std::string fdn;
         ResIDUtil::PortIndex2ResID(OnSlot<NS_DOMAIN::PortIndex>(), fdn, false);
     }},
    {"PortIndex2ResIDOfAKey", false,
     [] {
         std::string fdn;
         ResIDUtil::PortIndex2ResID(KeyOnSlot(), fdn, false);
     }},
    {"APIndex2ResID", false,
     [] {
         std::string fdn;
         ResIDUtil::APIndex2ResID(KeyOnSlot(), fdn, false);
     }},
    {"TPIndex2ResID", false,
     [] {
         std::string fdn;
         ResIDUtil::TPIndex2ResID(OnSlot<NS_DOMAIN::TPIndex>(), fdn);
     }},
    {"ResID2LoopBackPortIndex", false,
     [] {
         NS_DOMAIN::PortIndex port;
         ResIDUtil::ResID2LoopBackPortIndex("NE=5", port);
     }},
    {"MDIndex2ResID", false,
     [] {
         std::string fdn;
         ResIDUtil::MDIndex2ResID({}, fdn);
     }},
    {"MAIndex2ResID", false,
     [] {
         std::string fdn;
         ResIDUtil::MAIndex2ResID({}, fdn);
     }},
    {"MepIndex2ResID", false,
     [] {
         std::string fdn;
         ResIDUtil::MepIndex2ResID({}, fdn);
     }},
    {"RmepIndex2ResID", false,
     [] {
         std::string fdn;
         ResIDUtil::RmepIndex2ResID({}, fdn);
     }},
    {"MIPIndex2ResID", false,
     [] {
         NS_DOMAIN::MIPIndex mip;
         mip.mdId = 3;  // without an MD, the writer asks nothing
         std::string fdn;
         ResIDUtil::MIPIndex2ResID(mip, fdn);
     }},
    {"GetPFMPacketSize", true, [] { UtilCommon::Instance()->GetPFMPacketSize(); }},
    {"IsFilteNtf", true, [] { NtfFilter::Instance()->IsFilteNtf(5); }},
    {"ResID2MDIndex", true,
     [] {
         NS_DOMAIN::MDIndex md;
         ResIDUtil::ResID2MDIndex("NE=5", md);
     }},
    {"ResID2MAIndex", true,
     [] {
         NS_DOMAIN::MAIndex ma;
         ResIDUtil::ResID2MAIndex("NE=5", ma);
     }},
    {"ResID2MIPIndex", true,
     [] {
         NS_DOMAIN::MIPIndex mip;
         ResIDUtil::ResID2MIPIndex("NE=5", mip);
     }},
    {"ResID2MepIndex", true,
     [] {
         NS_DOMAIN::MEPIndex mep;
         ResIDUtil::ResID2MepIndex("NE=5,MD,MEP=1", mep);
     }},
};

// ---- Services that throw --------------------------------------------------------------------------------------------

struct OfService : std::runtime_error {
    OfService() : std::runtime_error("a service that fails") {}
};

class ThrowingInventory : public NS_SERVICE::InventoryBufif {
public:
    bool QueryNEType(std::int64_t, std::uint32_t&, bool) override { throw OfService(); }
    bool IsOamNumberOmitted(int) override { throw OfService(); }
    bool IsIPServiceNEType(unsigned short) override { throw OfService(); }
    bool IsKLVNEType(unsigned short) override { throw OfService(); }
    bool IsTransMultiSubShelf(unsigned long, unsigned short) override { throw OfService(); }
};

class ThrowingDataAccess : public NS_SERVICE::DAWSvcInterface {
public:
    NS_SERVICE::ConfigObject* GetConfiguration(const std::string&, const std::string&) override { throw OfService(); }
};

class ThrowingLog : public NS_SERVICE::LogSvcInterface, private NS_SERVICE::ModuleLogger {
public:
    NS_SERVICE::ModuleLogger* GetModuleLogger(const std::string&, const std::string&, const std::string&) override {
        return m_hasLogger ? this : throw OfService();
    }
    bool m_hasLogger = false;

private:
    void WriteLog(const std::string&, const std::string&, int, int, const char*, ...) override { throw OfService(); }
};

// Each test runs in a process without any earlier look-up.
class LookUps : public testing::TestWithParam<LookUp> {
protected:
    // Returns which exception leaves the operation. Does not return if the exception ends the process.
    static std::string WhatComesOut() {
        try {
            GetParam().call();
            return "nothing";
        } catch (const InterfaceNotExistException&) {
            return "no service";
        } catch (const OfService&) {
            return "the service's exception";
        } catch (const std::system_error&) {
            return "the lock's exception";
        }
    }

    Configuration m_configuration{{"EventSwitch", "2"}, {"Blacklist", "5"}};
};
using LookUpsDeathTest = LookUps;

// The search takes the registry's lock. A lock that fails there throws an exception that the look-up is declared not to
// throw: it may only report a missing service.
TEST_P(LookUpsDeathTest, EndTheProcessWhenTheSearchFails) {
    EXPECT_DEATH(
        {
            WhatComesOut();  // makes the other things that a look-up needs
            NS_BUNDLEMGR1::ServiceInterface other;
            BundleMgr::Instance()->RegisterService("Other", &other);  // makes the next look-up search the registry
            const FailingLocks failing;
            WhatComesOut();
            std::exit(0);
        },
        "terminate called");
}

// The look-up prepares itself before the search, and exceptions of that preparation pass. An operation that only writes
// a log record loses the record instead.
TEST_P(LookUps, LetPassThatTheyCannotBePrepared) {
    const auto said = InChildProcess([] {
        UtilCommon::Instance();
        NtfFilter::Instance();
        const FailingLocks failing;
        return WhatComesOut();
    });
    EXPECT_EQ(said, GetParam().isLog ? "nothing" : "the lock's exception");
}

TEST_P(LookUps, TellThatTheServiceIsMissing) {
    EXPECT_EQ(InChildProcess(&WhatComesOut), GetParam().isLog ? "nothing" : "no service");
}

// The look-up lets the exceptions of services pass. But if the log service throws instead of giving a logger, only the
// record is lost.
TEST_P(LookUps, LetPassWhatAServiceThrows) {
    const auto said = InChildProcess([] {
        std::string all;
        {
            ThrowingInventory inventory;
            ThrowingDataAccess dataAccess;
            ThrowingLog log;
            const Registration first("InventoryBufif", inventory);
            const Registration second("DAWSvcInterface", dataAccess);
            const Registration third("LogSvcInterface", log);
            all = WhatComesOut();
            log.m_hasLogger = true;
            all += ", " + WhatComesOut();
        }  // unregistering returns only if no call seems to be in flight
        return all + ", " + WhatComesOut();
    });
    EXPECT_EQ(said, GetParam().isLog ? "nothing, the service's exception, nothing"
                                     : "the service's exception, the service's exception, no service");
}

// After the exception, the caller's text holds what was written before the question.
TEST_F(LookUps, LeaveWhatWasWrittenBefore) {
    const auto written = InChildProcess([] {
        std::string fdn = "whatever the caller had";
        const auto write = [&fdn] {
            try {
                ResIDUtil::CardIndex2ResID(OnSlot<NS_DOMAIN::CardIndex>(), fdn);
                return std::string("no exception");
            } catch (const std::exception&) {
                return fdn;
            }
        };
        std::string all = write();
        ThrowingInventory inventory;
        const Registration registration("InventoryBufif", inventory);
        fdn = "whatever the caller had";
        return all + " " + write();
    });
    EXPECT_EQ(written, "NE=12,S=3,CP=-1 NE=12,S=3,CP=-1");
}

INSTANTIATE_TEST_SUITE_P(Of, LookUps, testing::ValuesIn(LOOK_UPS),
                         [](const auto& lookUp) { return std::string(lookUp.param.name); });
INSTANTIATE_TEST_SUITE_P(Of, LookUpsDeathTest, testing::ValuesIn(LOOK_UPS),
                         [](const auto& lookUp) { return std::string(lookUp.param.name); });

}  // namespace
