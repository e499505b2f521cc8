/// A test in an empty folder of its own, in which it runs the program as a user's shell does.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "support/files.h"

class ProgramTest : public testing::Test {
protected:
    /// What a run left behind.
    struct Ended {
        int code;
        std::string out;
        std::string err;
    };

    void WriteFile(const std::string& name, const std::string& text) const { NS_TEST::WriteFile(folder / name, text); }
    [[nodiscard]] std::string ReadFile(const std::string& name) const { return NS_TEST::ReadFile(folder / name); }
    [[nodiscard]] bool Exists(const std::string& name) const { return std::filesystem::exists(folder / name); }

    /// How many files the folder holds, hidden ones too.
    [[nodiscard]] std::ptrdiff_t Files() const {
        return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
    }

    /// Runs a command of the shell in which "kxdu" stands for the program, with `input` as its standard input. No
    /// variable that the program reads is set.
    [[nodiscard]] Ended Shell(const std::string& command, const std::string& input = {}) const {
        const NS_TEST::TemporaryFolder streams;
        NS_TEST::WriteFile(streams / "in", input);
        const auto quoted = [](const std::filesystem::path& path) {
            return std::string(1, '\'').append(path).append("'");
        };
        const std::string line =
            std::string("unset KX_INVENTORY KX_CONFIG_DIR NO_COLOR; kxdu() { '" KXDU_PROGRAM "' \"$@\"; }; cd ")
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

private:
    NS_TEST::TemporaryFolder m_folder;

protected:
    const std::filesystem::path& folder = m_folder.Path();
};
