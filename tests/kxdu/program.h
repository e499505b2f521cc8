/// A test in an empty folder of its own, in which it runs the program as a user's shell does.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>

/// A folder that goes with the object.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "kxdu-test-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        path = name;
    }

    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path path;
};

class ProgramTest : public testing::Test {
protected:
    /// What a run left behind.
    struct Ended {
        int code;
        std::string out;
        std::string err;
    };

    void WriteFile(const std::string& name, const std::string& text) const { Write(folder / name, text); }
    [[nodiscard]] std::string ReadFile(const std::string& name) const { return Read(folder / name); }
    [[nodiscard]] bool Exists(const std::string& name) const { return std::filesystem::exists(folder / name); }

    /// How many files the folder holds, hidden ones too.
    [[nodiscard]] std::ptrdiff_t Files() const {
        return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
    }

    /// Runs a command of the shell in which "kxdu" stands for the program, with input as its standard input. No
    /// variable that the program reads is set.
    [[nodiscard]] Ended Shell(const std::string& command, const std::string& input = {}) const {
        const TemporaryFolder streams;
        Write(streams.path / "in", input);
        const auto quoted = [](const std::filesystem::path& path) {
            return std::string(1, '\'').append(path).append("'");
        };
        const std::string line =
            std::string("unset KX_INVENTORY KX_CONFIG_DIR NO_COLOR; kxdu() { '" KXDU_PROGRAM "' \"$@\"; }; cd ")
                .append(quoted(folder))
                .append(" && { ")
                .append(command)
                .append("\n} <")
                .append(quoted(streams.path / "in"))
                .append(" >")
                .append(quoted(streams.path / "out"))
                .append(" 2>")
                .append(quoted(streams.path / "err"));
        const int status = std::system(line.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Read(streams.path / "out"), Read(streams.path / "err")};
    }

private:
    TemporaryFolder m_folder;

    static std::string Read(const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        if (!file) {
            throw std::runtime_error("cannot read " + path.string());
        }
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static void Write(const std::filesystem::path& path, const std::string& text) {
        std::ofstream file(path, std::ios::binary);
        if (!(file << text).flush()) {
            throw std::runtime_error("cannot write " + path.string());
        }
    }

protected:
    const std::filesystem::path& folder = m_folder.path;
};
