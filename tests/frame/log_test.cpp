#include "frame/log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/services.h"

namespace {

using NS_TEST::RecordingLog;
using NS_TEST::Registration;
using NS_UTIL::NS_FRAME::LogSource;
using NS_UTIL::NS_FRAME::RES_ID_LOG;
using NS_UTIL::NS_FRAME::UTIL_COMMON_LOG;
using testing::ElementsAre;
using testing::IsEmpty;

using LoggerName = RecordingLog::LoggerName;
using Record = RecordingLog::Record;

TEST(LogSource, WritesRecordsAsTheyAreListed) {
    RecordingLog log;
    const Registration registration("LogSvcInterface", log);
    RES_ID_LOG.Write(1064, 1, "[ResIDUtil::FillMDIndex]cannot find the MDName in FDN.");
    UTIL_COMMON_LOG.Write(766, 3, "[UtilCommon::GetPFMPacketSize]: PfmFrameRdSize = %d", 2000);
    UTIL_COMMON_LOG.Write(1008, 0, "[GetEventFilterList]: %s=%s is empty or wrong", "Whitelist", "x");
    EXPECT_THAT(
        log.m_records,
        ElementsAre(Record{"resIDUtil", "unknown", 1064, 1, "[ResIDUtil::FillMDIndex]cannot find the MDName in FDN."},
                    Record{"utilcommon", "unknown", 766, 3, "[UtilCommon::GetPFMPacketSize]: PfmFrameRdSize = 2000"},
                    Record{"utilcommon", "unknown", 1008, 0, "[GetEventFilterList]: Whitelist=x is empty or wrong"}));
}

TEST(LogSource, AsksForItsLoggerOnce) {
    RecordingLog log;
    const Registration registration("LogSvcInterface", log);
    for (int record = 0; record < 3; ++record) {
        RES_ID_LOG.Write(1, 1, "a");
        UTIL_COMMON_LOG.Write(1, 1, "b");
    }
    EXPECT_THAT(log.m_asked, ElementsAre(LoggerName{"kx_domain_bundle", "kx_domain_model", "debug"},
                                         LoggerName{"vemo", "vemo", "debug"}));
    EXPECT_EQ(log.m_records.size(), 6U);
}

TEST(LogSource, DropsRecordsWithoutALogService) {
    RES_ID_LOG.Write(1, 1, "dropped");
    RecordingLog log;
    const Registration registration("LogSvcInterface", log);
    RES_ID_LOG.Write(2, 1, "written");
    EXPECT_THAT(log.m_records, ElementsAre(Record{"resIDUtil", "unknown", 2, 1, "written"}));
}

TEST(LogSource, ForgetsItsLoggerWithTheService) {
    RecordingLog first;
    RecordingLog second;
    {
        const Registration registration("LogSvcInterface", first);
        RES_ID_LOG.Write(1, 1, "to the first");
    }
    RES_ID_LOG.Write(2, 1, "to nobody");
    const Registration registration("LogSvcInterface", second);
    RES_ID_LOG.Write(3, 1, "to the second");
    EXPECT_THAT(first.m_records, ElementsAre(Record{"resIDUtil", "unknown", 1, 1, "to the first"}));
    EXPECT_THAT(second.m_records, ElementsAre(Record{"resIDUtil", "unknown", 3, 1, "to the second"}));
}

TEST(LogSource, ForgetsItsLoggerWithAServiceThatIsReplaced) {
    RecordingLog first;
    RecordingLog second;
    const Registration registration("LogSvcInterface", first);
    RES_ID_LOG.Write(1, 1, "to the first");
    NS_BUNDLEMGR1::BundleMgr::Instance()->RegisterService("LogSvcInterface", &second);
    RES_ID_LOG.Write(2, 1, "to the second");
    EXPECT_EQ(first.m_records.size(), 1U);
    EXPECT_EQ(second.m_records.size(), 1U);
}

TEST(LogSource, TriesAgainAfterAFailure) {
    RecordingLog log;
    const Registration registration("LogSvcInterface", log);
    log.m_throws = true;
    EXPECT_NO_THROW(RES_ID_LOG.Write(1, 1, "dropped"));
    log.m_throws = false;
    log.m_hasLogger = false;
    RES_ID_LOG.Write(2, 1, "dropped");
    log.m_hasLogger = true;
    RES_ID_LOG.Write(3, 1, "written");
    EXPECT_EQ(log.m_asked.size(), 3U);
    EXPECT_THAT(log.m_records, ElementsAre(Record{"resIDUtil", "unknown", 3, 1, "written"}));
}

TEST(LogSource, WritesAlsoWhenNothingCanBeRemembered) {
    RecordingLog log;
    const Registration registration("LogSvcInterface", log);
    std::vector<std::unique_ptr<LogSource>> sources;
    for (int number = 0; number < 20; ++number) {
        sources.push_back(std::make_unique<LogSource>("file", "module", "subModule"));
        sources.back()->Write(number, 1, "first");
        sources.back()->Write(number, 1, "second");
    }
    EXPECT_EQ(log.m_records.size(), 40U);
}

}  // namespace
