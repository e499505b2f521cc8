#include <atomic>
#include <fstream>
#include <thread>

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kx_platform/configitems.h>
#include <kx_platform/dawsvcinterface.h>

#include "support.h"

namespace {

using namespace NS_STANDALONE;
using namespace NS_TEST;
using NS_BUNDLEMGR1::CorbaConfigItems;
using NS_SERVICE::ConfigObject;
using NS_SERVICE::DAWSvcInterface;
using testing::AllOf;
using testing::HasSubstr;

const std::string BUNDLE_FILE = "kx_corbaagent_bundle/bundle.cfg";

std::string Item(const std::string& key) {
    std::string value = "(missing)";
    CorbaConfigItems::Instance()->GetStrItemInfo(key, value);
    return value;
}

constexpr int MISSING = -777;

int Number(ConfigObject* object, const std::string& key) {
    int value = MISSING;
    const bool found = object->GetIntItemInfo(key, value);
    EXPECT_EQ(found, value != MISSING);
    return value;
}

class ConfigurationService : public testing::Test {
protected:
    ConfigurationService() {
        WriteFile(m_folder / BUNDLE_FILE,
                  "Telvandaire = 7\nname = \"12\"\nflag = true\nbig = 4294967296\nfar = 2147483647\n"
                  "[limits]\nlow = -3\nratio = 0.5\ntext = \"x\"\non = true\n[limits.inner]\ndeep = 1\n");
        HostOptions options;
        options.configFolder = m_folder / "";
        m_host = std::make_unique<Host>(options);
    }
    ~ConfigurationService() override { CorbaConfigItems::Instance()->Clear(); }

    static ConfigObject* Get(const std::string& path, const std::string& section = "") {
        return FindService<DAWSvcInterface>("DAWSvcInterface")->GetConfiguration(path, section);
    }

    TemporaryFolder m_folder;
    std::unique_ptr<Host> m_host;
};

TEST_F(ConfigurationService, SetsItems) {
    int number = 0;
    EXPECT_TRUE(CorbaConfigItems::Instance()->GetIntItemInfo("Telvandaire", number));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(Item("name"), "12");
    EXPECT_EQ(Item("flag"), "1");
    EXPECT_EQ(Item("big"), "4294967296");
    EXPECT_FALSE(CorbaConfigItems::Instance()->GetIntItemInfo("big", number));
}

TEST_F(ConfigurationService, TakesItsItemsBackAndNoOthers) {
    CorbaConfigItems::Instance()->SetItem("foreign", "stays");
    m_host.reset();
    for (const char* key : {"Telvandaire", "name", "flag", "big"}) {
        EXPECT_EQ(Item(key), "(missing)") << key;
    }
    EXPECT_EQ(Item("foreign"), "stays");
}

TEST_F(ConfigurationService, ReloadsItems) {
    CorbaConfigItems::Instance()->SetItem("foreign", "stays");
    WriteFile(m_folder / BUNDLE_FILE, "Telvandaire = 8\nnewcomer = \"n\"\n");
    m_host->ReloadConfiguration();
    EXPECT_EQ(Item("Telvandaire"), "8");
    EXPECT_EQ(Item("newcomer"), "n");
    EXPECT_EQ(Item("name"), "(missing)");
    EXPECT_EQ(Item("flag"), "(missing)");
    EXPECT_EQ(Item("foreign"), "stays");
    m_host.reset();
    EXPECT_EQ(Item("newcomer"), "(missing)");
}

TEST_F(ConfigurationService, LeavesAllAsItWasWhenTheReloadFails) {
    ConfigObject* const top = Get(BUNDLE_FILE);
    const std::string file = (m_folder / BUNDLE_FILE).string();
    const auto expectUnchanged = [&] {
        EXPECT_EQ(Item("Telvandaire"), "7");
        EXPECT_EQ(Item("name"), "12");
        EXPECT_EQ(Item("other"), "(missing)");
        EXPECT_EQ(Number(top, "Telvandaire"), 7);
    };
    WriteFile(file, "Telvandaire = 8\nother = 1\nbroken =\n");
    EXPECT_THAT(ErrorOf([&] { m_host->ReloadConfiguration(); }), HasSubstr(file + ":3:9: "));
    expectUnchanged();
    WriteFile(file, "Telvandaire = 8\nother = 1.5\n");
    EXPECT_THAT(ErrorOf([&] { m_host->ReloadConfiguration(); }), HasSubstr(file + ":2:9: item \"other\""));
    expectUnchanged();
    std::filesystem::remove(file);
    EXPECT_THAT(ErrorOf([&] { m_host->ReloadConfiguration(); }), HasSubstr(file));
    expectUnchanged();
}

TEST_F(ConfigurationService, NeedsItsFile) {
    const TemporaryFolder empty;
    HostOptions options;
    options.configFolder = empty.Path();
    EXPECT_THAT(ErrorOf([&] { const Host host(options); }),
                AllOf(HasSubstr((empty / BUNDLE_FILE).string()), HasSubstr("no such file"), HasSubstr("TOML")));
}

TEST_F(ConfigurationService, ShowsTheTopLevel) {
    ConfigObject* const top = Get(BUNDLE_FILE);
    ASSERT_NE(top, nullptr);
    EXPECT_EQ(Number(top, "Telvandaire"), 7);
    EXPECT_EQ(Number(top, "flag"), 1);
    EXPECT_EQ(Number(top, "far"), 2147483647);
    for (const char* key : {"name", "big", "low", "limits", "absent", ""}) {
        EXPECT_EQ(Number(top, key), MISSING) << key;
    }
}

TEST_F(ConfigurationService, ShowsSections) {
    ConfigObject* const limits = Get(BUNDLE_FILE, "limits");
    ASSERT_NE(limits, nullptr);
    EXPECT_EQ(Number(limits, "low"), -3);
    EXPECT_EQ(Number(limits, "on"), 1);
    for (const char* key : {"ratio", "text", "inner", "deep", "Telvandaire"}) {
        EXPECT_EQ(Number(limits, key), MISSING) << key;
    }
    ConfigObject* const absent = Get(BUNDLE_FILE, "absent");
    ASSERT_NE(absent, nullptr);
    EXPECT_EQ(Number(absent, "low"), MISSING);
}

TEST_F(ConfigurationService, GivesTheSameObjectAgain) {
    EXPECT_EQ(Get(BUNDLE_FILE), Get(BUNDLE_FILE));
    EXPECT_EQ(Get(BUNDLE_FILE, "limits"), Get(BUNDLE_FILE, "limits"));
    EXPECT_NE(Get(BUNDLE_FILE), Get(BUNDLE_FILE, "limits"));
}

TEST_F(ConfigurationService, AnswersFromOtherFiles) {
    EXPECT_EQ(Get("other/more.cfg"), nullptr);
    WriteFile(m_folder / "other/more.cfg", "a = 1\nlist = [1]\n[s]\na = 2\n");
    ASSERT_NE(Get("other/more.cfg"), nullptr);
    EXPECT_EQ(Number(Get("other/more.cfg"), "a"), 1);
    EXPECT_EQ(Number(Get("other/more.cfg", "s"), "a"), 2);
    EXPECT_EQ(Item("a"), "(missing)");
}

TEST_F(ConfigurationService, NeverLeavesItsFolder) {
    const TemporaryFolder outside;
    WriteFile(outside / "x.cfg", "a = 1\n");
    const std::string name = outside.Path().filename().string();
    const std::string path = (outside / "x.cfg").string();
    ASSERT_TRUE(std::filesystem::exists(m_folder.Path() / ".." / name / "x.cfg"));
    EXPECT_EQ(Get(path), nullptr);
    EXPECT_EQ(Get("../" + name + "/x.cfg"), nullptr);
    EXPECT_EQ(Get("kx_corbaagent_bundle/../../" + name + "/x.cfg"), nullptr);
    EXPECT_EQ(Get("kx_corbaagent_bundle/../" + BUNDLE_FILE), nullptr);
    EXPECT_EQ(Get((m_folder / BUNDLE_FILE).string()), nullptr);
}

TEST_F(ConfigurationService, AnswersNullForWhatIsNoFile) {
    for (const char* path : {"", ".", "kx_corbaagent_bundle", "absent.cfg", "kx_corbaagent_bundle/bundle.cfg/x"}) {
        EXPECT_EQ(Get(path), nullptr) << path;
    }
    EXPECT_EQ(Get(std::string(5000, 'x')), nullptr);
}

TEST_F(ConfigurationService, AnswersNullForAFileThatDoesNotParse) {
    WriteFile(m_folder / "broken.cfg", "a = \n");
    EXPECT_EQ(Get("broken.cfg"), nullptr);
    WriteFile(m_folder / "broken.cfg", "a = 1\n");
    ASSERT_NE(Get("broken.cfg"), nullptr);
    EXPECT_EQ(Number(Get("broken.cfg"), "a"), 1);
}

TEST_F(ConfigurationService, KeepsItsObjectsWhenItReloads) {
    WriteFile(m_folder / "more.cfg", "a = 1\n");
    ConfigObject* const top = Get(BUNDLE_FILE);
    ConfigObject* const limits = Get(BUNDLE_FILE, "limits");
    ConfigObject* const more = Get("more.cfg");
    WriteFile(m_folder / BUNDLE_FILE, "Telvandaire = 9\n[fresh]\nb = 4\n");
    WriteFile(m_folder / "more.cfg", "a = 2\n");
    m_host->ReloadConfiguration();
    EXPECT_EQ(Number(top, "Telvandaire"), 9);
    EXPECT_EQ(Number(top, "flag"), MISSING);
    EXPECT_EQ(Number(limits, "low"), MISSING);
    EXPECT_EQ(Number(Get(BUNDLE_FILE, "fresh"), "b"), 4);
    EXPECT_EQ(Number(more, "a"), 2);
    EXPECT_EQ(Get(BUNDLE_FILE), top);

    std::filesystem::remove(m_folder / "more.cfg");
    WriteFile(m_folder / BUNDLE_FILE, "[limits]\nlow = 6\n");
    m_host->ReloadConfiguration();
    EXPECT_EQ(Get("more.cfg"), nullptr);
    EXPECT_EQ(Number(more, "a"), MISSING);
    EXPECT_EQ(Get(BUNDLE_FILE, "limits"), limits);
    EXPECT_EQ(Number(limits, "low"), 6);
}

TEST_F(ConfigurationService, ReloadsNothingWhenAnotherFileDoesNotParseAnyMore) {
    WriteFile(m_folder / "more.cfg", "a = 1\n");
    ConfigObject* const more = Get("more.cfg");
    WriteFile(m_folder / BUNDLE_FILE, "Telvandaire = 9\n");
    WriteFile(m_folder / "more.cfg", "a = \n");
    EXPECT_THAT(ErrorOf([&] { m_host->ReloadConfiguration(); }), HasSubstr((m_folder / "more.cfg").string() + ":1:"));
    EXPECT_EQ(Item("Telvandaire"), "7");
    EXPECT_EQ(Number(more, "a"), 1);
}

TEST_F(ConfigurationService, AnswersManyThreadsWhileItIsReloaded) {
    std::atomic<bool> stop{false};
    std::atomic<int> answers{0};
    std::vector<std::thread> readers;
    for (int thread = 0; thread < 3; ++thread) {
        readers.emplace_back([&, thread] {
            const std::string own = "file" + std::to_string(thread) + ".cfg";
            do {
                const int number = Number(Get(BUNDLE_FILE), "Telvandaire");
                ASSERT_TRUE(number == 7 || number == 8) << number;
                ConfigObject* const file = Get(own);
                if (file != nullptr) {
                    ASSERT_EQ(Number(file, "a"), thread);
                    ++answers;
                }
            } while (!stop);
        });
    }
    for (int round = 0; round < 60 || (answers == 0 && round < 6000); ++round) {
        if (round == 20) {
            for (int thread = 0; thread < 3; ++thread) {
                const auto file = m_folder / ("file" + std::to_string(thread) + ".cfg");
                WriteFile(file.string() + ".new", "a = " + std::to_string(thread) + "\n");
                std::filesystem::rename(file.string() + ".new", file);
            }
        }
        WriteFile(m_folder / BUNDLE_FILE, "Telvandaire = " + std::to_string(7 + round % 2) + "\n");
        m_host->ReloadConfiguration();
    }
    stop = true;
    for (std::thread& reader : readers) {
        reader.join();
    }
    EXPECT_GT(answers, 0);
}

// Tries unreadable files as an ordinary user: nothing is forbidden to the superuser.
TEST(ConfigurationFile, SaysWhyItCannotBeRead) {
    const TemporaryFolder folder;
    const auto file = folder / "config/kx_corbaagent_bundle/bundle.cfg";
    HostOptions options;
    options.configFolder = folder / "config";
    const auto error = [&options] { return ErrorOf([&options] { const Host host(options); }); };
    const std::string hint =
        "; a configuration folder holds its configuration items in "
        "kx_corbaagent_bundle/bundle.cfg, in TOML";
    std::filesystem::create_directories(file);
    EXPECT_EQ(error(), file.string() + ": is not a regular file" + hint);
    std::filesystem::remove(file);
    EXPECT_EQ(error(), file.string() + ": no such file" + hint);
    WriteFile(file, "a = 1\n");

    const auto answer = folder / "answer";
    const auto errorWithoutRights = [&] {
        constexpr unsigned NOBODY = 65534;
        const pid_t child = fork();
        if (child == 0) {
            std::ofstream stream(answer);
            if (getuid() == 0 && (setgid(NOBODY) != 0 || setuid(NOBODY) != 0)) {
                _exit(1);
            }
            stream << error() << std::flush;
            _exit(0);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
        return ReadFile(answer);
    };
    using std::filesystem::perms;
    std::filesystem::permissions(folder.Path(), perms{0755});
    std::filesystem::permissions(file, perms{0});
    EXPECT_EQ(errorWithoutRights(), file.string() + ": cannot be opened: Permission denied");
    std::filesystem::permissions(file.parent_path(), perms{0});
    EXPECT_EQ(errorWithoutRights(), file.string() + ": cannot be opened: Permission denied");
    std::filesystem::permissions(file.parent_path(), perms{0755});
}

}  // namespace
