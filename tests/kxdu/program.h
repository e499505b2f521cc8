/// A test that runs the program as a user's shell does, in an empty folder of its own.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "support/files.h"
#include "support/foldertest.h"

class ProgramTest : public FolderTest {
protected:
    /// The result of a run.
    struct Ended {
        int code;
        std::string out;
        std::string err;
    };

    /// Makes the configuration in the folder "config". The default items hold back notification 7.
    void Configure(const std::string& items = "EventSwitch = 2\nBlacklist = \"7\"\n") const {
        WriteFile(CONFIG, items);
    }
    static constexpr auto CONFIG = "config/kx_corbaagent_bundle/bundle.cfg";

    /// Runs a shell command with `input` as standard input. "kxdu" stands for the program; no environment variable that
    /// the program reads is set.
    [[nodiscard]] Ended Shell(const std::string& command, const std::string& input = {}) const {
        const NS_TEST::TemporaryFolder streams;
        NS_TEST::WriteFile(streams / "in", input);
        const auto quoted = [](const std::filesystem::path& path) {
            return std::string(1, '\'').append(path).append("'");
        };
        const std::string line = std::string(
                                     "unset KX_INVENTORY KX_CONFIG_DIR NO_COLOR FORCE_COLOR CLICOLOR_FORCE COLUMNS; "
                                     "export LC_ALL=C.UTF-8 TERM=xterm; kxdu() { '" KXDU_PROGRAM "' \"$@\"; }; cd ")
                                     .append(quoted(folder))
                                     .append(" && { ")
                                     .append(command)
                                     .append("\n} <")
                                     .append(quoted(streams / "in"))
                                     .append(" >")
                                     .append(quoted(streams / "out"))
                                     .append(" 2>")
                                     .append(quoted(streams / "err"));
        const int status = std::system(line.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, NS_TEST::ReadFile(streams / "out"),
                NS_TEST::ReadFile(streams / "err")};
    }

    /// The command that runs the program in the background, by way of env: the shell alone would make it ignore SIGINT
    /// and SIGQUIT.
    [[nodiscard]] static std::string InBackground(const std::string& arguments) {
        return "env --default-signal=INT,QUIT '" KXDU_PROGRAM "' " + arguments + " & ";
    }

    /// The command that sends `signal` to the background run as soon as the command `reached` succeeds, and prints the
    /// name of the signal that ended the run. The run may end earlier.
    [[nodiscard]] static std::string StopWhen(const std::string& reached, const std::string& signal) {
        return "while kill -0 $! && ! { " + reached + "; }; do sleep 0.001; done; kill -" + signal +
               " $!; wait $!; kill -l $?";
    }
};
