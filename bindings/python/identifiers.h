/// Very many identifiers in memory, cut into chunks that threads read at the same time, without the interpreter's lock.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace NS_KX::NS_PYTHON {

/// Identifiers in rows. If other threads change the given memory meanwhile, identifiers may be wrong, but nothing is
/// read past its end.
class Identifiers {
public:
    virtual ~Identifiers() = default;

    [[nodiscard]] virtual std::size_t RowCount() const = 0;
    [[nodiscard]] virtual std::size_t ChunkCount() const = 0;
    /// The row of the first identifier of a chunk.
    [[nodiscard]] virtual std::size_t FirstRow(std::size_t chunk) const = 0;
    /// The identifiers of a chunk, in `room` if they need it. Throws std::invalid_argument and std::bad_alloc. Any
    /// number of threads at a time, each with its own `room`.
    virtual std::span<const std::string_view> Read(std::size_t chunk, std::vector<std::string_view>& room) const = 0;

protected:
    Identifiers() = default;
    Identifiers(const Identifiers&) = delete;
    Identifiers& operator=(const Identifiers&) = delete;
};

/// Identifiers whose number is known, in chunks of equal size.
class CountedIdentifiers : public Identifiers {
public:
    [[nodiscard]] std::size_t RowCount() const override { return m_count; }
    [[nodiscard]] std::size_t ChunkCount() const override { return (m_count + ROWS - 1) / ROWS; }
    [[nodiscard]] std::size_t FirstRow(std::size_t chunk) const override { return chunk * ROWS; }

protected:
    explicit CountedIdentifiers(std::size_t count) : m_count(count) {}

    [[nodiscard]] std::size_t RowsOf(std::size_t chunk) const;

private:
    static constexpr std::size_t ROWS = 2048;

    std::size_t m_count;
};

/// The text of row i is what `text` holds from offset i to offset i + 1.
template <class Offset>
class OffsetRows : public CountedIdentifiers {
public:
    /// `offsets` are one more than there are rows.
    OffsetRows(std::string_view text, std::span<const Offset> offsets)
        : CountedIdentifiers(offsets.size() - 1), m_text(text), m_offsets(offsets) {}

    std::span<const std::string_view> Read(std::size_t chunk, std::vector<std::string_view>& room) const override;

private:
    [[nodiscard]] std::size_t ReadOffset(std::size_t place, std::size_t least) const;

    std::string_view m_text;
    std::span<const Offset> m_offsets;
};

extern template class OffsetRows<std::int32_t>;
extern template class OffsetRows<std::int64_t>;

/// Each line is a row. LF ends a line, and CR before it; the last line may have no end. A byte-order mark at the
/// beginning is no part of the text.
class LineRows : public Identifiers {
public:
    /// Counts the lines of `text`, on all cores.
    explicit LineRows(std::string_view text);

    [[nodiscard]] std::size_t RowCount() const override { return m_count; }
    [[nodiscard]] std::size_t ChunkCount() const override { return m_chunks.size(); }
    [[nodiscard]] std::size_t FirstRow(std::size_t chunk) const override { return m_chunks[chunk].firstRow; }
    std::span<const std::string_view> Read(std::size_t chunk, std::vector<std::string_view>& room) const override;

private:
    struct Chunk {
        std::string_view text;
        std::size_t firstRow = 0;
        std::size_t rows = 0;
    };

    std::vector<Chunk> m_chunks;
    std::size_t m_count = 0;
};

}  // namespace NS_KX::NS_PYTHON
