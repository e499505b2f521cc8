#include <thread>

#include <gmock/gmock.h>

#include <kx_platform/logsvcinterface.h>

#include "support.h"

namespace {

using namespace NS_STANDALONE;
using namespace NS_TEST;
using NS_SERVICE::LogSvcInterface;
using NS_SERVICE::ModuleLogger;
using testing::AllOf;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

class LogService : public testing::Test {
protected:
    HostOptions ToFile() const {
        HostOptions options;
        options.log.kind = LogTarget::Kind::FILE;
        options.log.file = m_file;
        return options;
    }

    static LogSvcInterface* Service() { return FindService<LogSvcInterface>("LogSvcInterface"); }

    // Returns what is in the file after records wrote to a logger of this level name.
    template <class Records>
    std::string WrittenFrom(const std::string& level, Records records) {
        {
            const Host host(ToFile());
            records(*Service()->GetModuleLogger("module", "sub", level));
        }
        const std::string text = ReadFile(m_file);
        std::filesystem::remove(m_file);
        return text;
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_file = m_folder / "kx.log";
};

void WriteEachLevel(ModuleLogger& logger) {
    for (int level = -1; level <= 5; ++level) {
        logger.WriteLog("f", "g", 1, level, "<%d>", level);
    }
}

TEST_F(LogService, IsNotThereWithoutTarget) {
    const Host host(HostOptions{});
    EXPECT_EQ(Service(), nullptr);
}

TEST_F(LogService, ShowsAllOfARecord) {
    const std::string text = WrittenFrom("debug", [](ModuleLogger& logger) {
        logger.WriteLog("resIDUtil", "unknown", 123, 1, "[Reader]: %s = %d, {} %% %c", "NE", 7, 'x');
    });
    EXPECT_THAT(text, MatchesRegex("[0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+:[0-9]+\\.[0-9]+ warning \\[[0-9]+\\] module/sub "
                                   "resIDUtil:123 unknown: \\[Reader\\]: NE = 7, \\{\\} % x\n"));
}

TEST_F(LogService, NamesLevels) {
    const std::string text = WrittenFrom("trace", WriteEachLevel);
    for (const char* record : {" error .*<-1>", " error .*<0>", " warning .*<1>", " info .*<2>", " debug .*<3>",
                               " trace .*<4>", " trace .*<5>"}) {
        EXPECT_THAT(text, testing::ContainsRegex(record));
    }
}

TEST_F(LogService, WritesFromTheNamedLevelOn) {
    const auto count = [this](const std::string& level) {
        const std::string text = WrittenFrom(level, WriteEachLevel);
        return std::ranges::count(text, '\n');
    };
    EXPECT_EQ(count("error"), 2);
    EXPECT_EQ(count("warning"), 3);
    EXPECT_EQ(count("info"), 4);
    EXPECT_EQ(count("debug"), 5);
    EXPECT_EQ(count("trace"), 7);
    EXPECT_EQ(count("whatever"), 5);
    EXPECT_EQ(count(""), 5);
}

TEST_F(LogService, WritesMessagesOfAnyLength) {
    for (const std::size_t length : {std::size_t{0}, std::size_t{1}, std::size_t{510}, std::size_t{511},
                                     std::size_t{512}, std::size_t{513}, std::size_t{1000000}}) {
        const std::string message(length, 'm');
        const std::string text = WrittenFrom(
            "debug", [&](ModuleLogger& logger) { logger.WriteLog("f", "g", 1, 0, "%s|%d", message.c_str(), 42); });
        EXPECT_THAT(text, testing::EndsWith("f:1 g: " + message + "|42\n")) << length;
    }
}

TEST_F(LogService, WritesTheFormatWhenItCannotBeUsed) {
    const std::string text = WrittenFrom(
        "debug", [](ModuleLogger& logger) { logger.WriteLog("f", "g", 1, 0, "%lc", static_cast<wint_t>(0x7FFFFFFF)); });
    EXPECT_THAT(text, testing::EndsWith("f:1 g: %lc\n"));
}

TEST_F(LogService, KeepsOneLoggerForEachModuleAndLevel) {
    const Host host(ToFile());
    ModuleLogger* const logger = Service()->GetModuleLogger("m", "s", "debug");
    EXPECT_NE(logger, nullptr);
    EXPECT_EQ(Service()->GetModuleLogger("m", "s", "debug"), logger);
    EXPECT_NE(Service()->GetModuleLogger("m", "s", "error"), logger);
    EXPECT_NE(Service()->GetModuleLogger("m", "t", "debug"), logger);
    EXPECT_NE(Service()->GetModuleLogger("n", "s", "debug"), logger);
}

TEST_F(LogService, HasWarningsInTheFileAtOnce) {
    const Host host(ToFile());
    Service()->GetModuleLogger("m", "s", "debug")->WriteLog("f", "g", 1, 1, "careful");
    EXPECT_THAT(ReadFile(m_file), HasSubstr("careful"));
}

TEST_F(LogService, AppendsToAFile) {
    WriteFile(m_file, "before\n");
    {
        const Host host(ToFile());
        Service()->GetModuleLogger("m", "s", "debug")->WriteLog("f", "g", 1, 3, "after");
    }
    EXPECT_THAT(ReadFile(m_file), MatchesRegex("before\n.*after\n"));
}

TEST_F(LogService, RotatesItsFile) {
    HostOptions options = ToFile();
    options.log.maxFileBytes = 1000;
    options.log.maxFiles = 2;
    {
        const Host host(options);
        ModuleLogger* const logger = Service()->GetModuleLogger("m", "s", "debug");
        for (int record = 0; record < 100; ++record) {
            logger->WriteLog("f", "g", 1, 0, "record %d.", record);
        }
    }
    const std::string newest = ReadFile(m_file);
    const std::string older = ReadFile(m_folder / "kx.1.log");
    const std::string oldest = ReadFile(m_folder / "kx.2.log");
    EXPECT_FALSE(std::filesystem::exists(m_folder / "kx.3.log"));
    EXPECT_THAT(newest, HasSubstr("record 99."));
    for (const std::string& file : {newest, older, oldest}) {
        EXPECT_GT(file.size(), 0U);
        EXPECT_LE(file.size(), 1000U);
    }
    // The three hold the last records without a gap.
    const std::string all = oldest + older + newest;
    const auto held = std::ranges::count(all, '\n');
    ASSERT_GT(held, 10);
    for (auto record = 100 - held; record < 100; ++record) {
        EXPECT_THAT(all, HasSubstr("record " + std::to_string(record) + "."));
    }
}

// "kx.1.log" is a folder with something in it, so the file cannot get that name.
TEST_F(LogService, GoesOnInItsFileWhenItCannotRotate) {
    HostOptions options = ToFile();
    options.log.maxFileBytes = 1000;
    options.log.maxFiles = 1;
    std::filesystem::create_directories(m_folder / "kx.1.log" / "in the way");
    testing::internal::CaptureStderr();
    {
        const Host host(options);
        ModuleLogger* const logger = Service()->GetModuleLogger("m", "s", "debug");
        for (int record = 0; record < 200; ++record) {
            logger->WriteLog("f", "g", 1, 0, "record %d.", record);
        }
        const std::string complaint = testing::internal::GetCapturedStderr();
        EXPECT_THAT(complaint, testing::StartsWith(m_file.string() + ": the log cannot be rotated"));
        EXPECT_EQ(std::ranges::count(complaint, '\n'), 1) << complaint;
        const std::string all = ReadFile(m_file);
        EXPECT_EQ(std::ranges::count(all, '\n'), 200);
        EXPECT_THAT(all, HasSubstr("record 0."));

        std::filesystem::remove_all(m_folder / "kx.1.log");
        for (int record = 200; record < 300; ++record) {
            logger->WriteLog("f", "g", 1, 0, "record %d.", record);
        }
    }
    EXPECT_TRUE(std::filesystem::is_regular_file(m_folder / "kx.1.log"));
    EXPECT_LE(std::filesystem::file_size(m_file), 1000U);
}

TEST_F(LogService, KeepsItsOlderFilesWhenTheNewestMustStay) {
    WriteFile(m_folder / "kx.1.log", "one\n");
    WriteFile(m_folder / "kx.2.log", "two\n");
    std::filesystem::create_directory(m_folder / "kx.log.rotated");
    HostOptions options = ToFile();
    options.log.maxFileBytes = 1000;
    options.log.maxFiles = 2;
    testing::internal::CaptureStderr();
    {
        const Host host(options);
        ModuleLogger* const logger = Service()->GetModuleLogger("m", "s", "debug");
        for (int record = 0; record < 200; ++record) {
            logger->WriteLog("f", "g", 1, 0, "record %d.", record);
        }
    }
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::StartsWith(m_file.string() + ": the log cannot be"));
    EXPECT_EQ(ReadFile(m_folder / "kx.1.log"), "one\n");
    EXPECT_EQ(ReadFile(m_folder / "kx.2.log"), "two\n");
    EXPECT_EQ(std::ranges::count(ReadFile(m_file), '\n'), 200);
}

TEST_F(LogService, WritesEachRecordInOneLine) {
    const std::string text = WrittenFrom("debug", [](ModuleLogger& logger) {
        logger.WriteLog("f", "g", 1, 0,
                        "a\nb\r\tc\x1b[31md\x7f"
                        "e\\n K\xc3\xb6ln");
        logger.WriteLog("file\n", "function\n", 1, 0, "x");
        logger.WriteLog("f", "g", 1, 0, "C1 \xc2\x9b, bidi \xe2\x80\xae, no UTF-8 \xff");
    });
    EXPECT_THAT(text, HasSubstr("f:1 g: a\\nb\\r\\tc\\x1b[31md\\x7fe\\n K\xc3\xb6ln\n"));
    EXPECT_THAT(text, HasSubstr("file\\n:1 function\\n: x\n"));
    EXPECT_THAT(text, HasSubstr("f:1 g: C1 \\xc2\\x9b, bidi \\xe2\\x80\\xae, no UTF-8 \\xff\n"));
    EXPECT_EQ(std::ranges::count(text, '\n'), 3);
}

TEST_F(LogService, WritesToStderr) {
    testing::internal::CaptureStderr();
    {
        HostOptions options;
        options.log.kind = LogTarget::Kind::STDERR;
        const Host host(options);
        Service()->GetModuleLogger("m", "s", "error")->WriteLog("f", "g", 9, 0, "spoken %s", "up");
        Service()->GetModuleLogger("m", "s", "error")->WriteLog("f", "g", 9, 3, "kept quiet");
    }
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                AllOf(HasSubstr(" error "), HasSubstr("m/s f:9 g: spoken up\n"), Not(HasSubstr("quiet"))));
}

TEST_F(LogService, NamesAFileThatItCannotWrite) {
    HostOptions options = ToFile();
    options.log.file = m_folder.Path();
    EXPECT_THAT(ErrorOf([&] { const Host host(options); }),
                HasSubstr(m_folder.Path().string() + ": cannot be the log"));
    options = ToFile();
    options.log.maxFileBytes = 0;
    EXPECT_THAT(ErrorOf([&] { const Host host(options); }), HasSubstr(m_file.string() + ": cannot be the log"));
    options = ToFile();
    options.log.maxFiles = 200001;
    EXPECT_THAT(ErrorOf([&] { const Host host(options); }), HasSubstr(m_file.string() + ": cannot be the log"));
    EXPECT_EQ(Service(), nullptr);
}

TEST_F(LogService, TakesTheEndsOfTheRanges) {
    HostOptions options = ToFile();
    options.log.maxFileBytes = 1;
    options.log.maxFiles = 200000;
    const Host host(options);
    EXPECT_NE(Service(), nullptr);
}

TEST_F(LogService, TakesRecordsFromManyThreads) {
    constexpr int THREADS = 4;
    constexpr int RECORDS = 500;
    const std::string text = WrittenFrom("debug", [](ModuleLogger&) {
        std::vector<std::thread> writers;
        for (int thread = 0; thread < THREADS; ++thread) {
            writers.emplace_back([thread] {
                for (int record = 0; record < RECORDS; ++record) {
                    Service()
                        ->GetModuleLogger("m", std::to_string(record % 3), "debug")
                        ->WriteLog("f", "g", 1, 3, "<%d.%d>", thread, record);
                }
            });
        }
        for (std::thread& writer : writers) {
            writer.join();
        }
    });
    EXPECT_EQ(std::ranges::count(text, '\n'), THREADS * RECORDS);
    for (int thread = 0; thread < THREADS; ++thread) {
        for (int record = 0; record < RECORDS; ++record) {
            std::ostringstream message;
            message << '<' << thread << '.' << record << ">\n";
            ASSERT_NE(text.find(message.str()), std::string::npos) << message.str();
        }
    }
}

}  // namespace
