#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "lines/descriptor.h"

namespace NS_KX {

class Decompression;

/// The bytes of one file, or of standard input. A compressed file (gzip, zstd or xz, recognized by its first bytes) is
/// decompressed on a thread of its own.
class Input {
public:
    /// Takes `descriptor` over. `name` is for messages. Adds the number of bytes read, before decompression, to
    /// `bytesRead`. Throws `Failure` with `Cause::INPUT`.
    Input(int descriptor, std::string name, std::atomic<std::uint64_t>& bytesRead);
    ~Input();
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    /// Reads at least one byte, and returns how many; 0 at the end. Returns slow input as it arrives. Throws `Failure`
    /// with `Cause::INPUT` if the input cannot be read, or if its compressed data is corrupt or cut off.
    std::size_t Read(char* memory, std::size_t size);

private:
    std::size_t ReadRaw(char* memory, std::size_t size);

    Descriptor m_descriptor;
    std::string m_name;
    std::atomic<std::uint64_t>& m_bytesRead;
    std::string m_head;  // read to recognize the compression
    std::size_t m_givenOfHead = 0;
    std::unique_ptr<Decompression> m_decompression;  // ends first: its thread reads from the descriptor
};

}  // namespace NS_KX
