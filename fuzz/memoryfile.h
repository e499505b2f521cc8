#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

namespace NS_FUZZ {

/// A file in memory, for readers that take a file's name: a fuzzer calls them too often for a disk.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view text) : m_descriptor(memfd_create("fuzz", MFD_CLOEXEC)) {
        if (m_descriptor == -1 || write(m_descriptor, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
            throw std::runtime_error("no file in memory");
        }
    }
    ~MemoryFile() { close(m_descriptor); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    [[nodiscard]] std::string Name() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

private:
    int m_descriptor;
};

}  // namespace NS_FUZZ
