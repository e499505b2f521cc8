/// File descriptors: closing, and reading and writing that neither signals nor non-blocking descriptors cut short.
#pragma once

#include <cstddef>
#include <string_view>

#include <sys/types.h>

namespace NS_KX {

/// Closes a file descriptor at its end; not that of standard input, which belongs to the process.
class Descriptor {
public:
    explicit Descriptor(int number) noexcept : m_number(number) {}
    ~Descriptor();
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int Get() const noexcept { return m_number; }

private:
    int m_number;
};

/// Reads at least one byte, and returns how many; 0 at the end. Waits for a non-blocking descriptor. Returns -1 and
/// sets errno when the system cannot read.
ssize_t ReadSome(int descriptor, char* memory, std::size_t size) noexcept;

/// Writes all of `text`. Waits for a non-blocking descriptor. Returns false and sets errno when the system cannot
/// write.
bool WriteAll(int descriptor, std::string_view text) noexcept;

/// Writes `text` to standard error. Bytes that would steer a terminal, other than newlines, and bytes that are not
/// UTF-8 stand as "\x1b": a name or a line from outside must not. A failure is ignored: there is no other place for a
/// message.
void WriteMessage(std::string_view text) noexcept;

}  // namespace NS_KX
