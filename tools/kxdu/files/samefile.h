#pragma once

#include <filesystem>

namespace NS_KXDU {

/// Whether both names lead to one file, by whatever path or link; for files that are not there, whether they would.
/// False for devices and pipes: what is written there replaces nothing.
bool IsSameFile(const std::filesystem::path& one, const std::filesystem::path& other);

}  // namespace NS_KXDU
