/// A test that has its own empty folder.
#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "support/files.h"

class FolderTest : public testing::Test {
protected:
    void WriteFile(const std::string& name, const std::string& text) const { NS_TEST::WriteFile(folder / name, text); }
    [[nodiscard]] std::string ReadFile(const std::string& name) const { return NS_TEST::ReadFile(folder / name); }
    [[nodiscard]] bool Exists(const std::string& name) const { return std::filesystem::exists(folder / name); }

    /// How many files the folder holds, hidden ones too.
    [[nodiscard]] std::ptrdiff_t Files() const {
        return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
    }

private:
    NS_TEST::TemporaryFolder m_folder;

protected:
    const std::filesystem::path& folder = m_folder.Path();
};
