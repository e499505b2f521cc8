#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "catalogue/kinds.h"

namespace NS_KX {

/// One JSON line as `decode` writes it: {"fdn":...,"type":...,"record":{...}}, its members in any order. "fdn" may be
/// missing. Its memory is kept for the next line.
class RecordLine {
public:
    /// Replaces what was parsed before by `line`. Throws `BadRecord`; what was parsed before is gone even
    /// then.
    void Parse(std::string_view line);

    /// The identifier beside the record; empty when there is none.
    [[nodiscard]] std::string_view Fdn() const noexcept { return m_fdn; }
    /// The type of the record.
    [[nodiscard]] std::string_view Type() const noexcept { return m_type; }

    /// Fills a fresh record of `kind`. Every field of the record must be there, and no other. Throws `BadRecord`.
    void Fill(const Kind& kind, void* record);

private:
    class Handler;

    struct NoNumber {};   ///< null
    struct NoInteger {};  ///< a number with a fraction or an exponent, or beyond 64 bits
    using Value = std::variant<NoNumber, NoInteger, bool, std::int64_t, std::string_view>;

    struct Member {
        std::string_view nested;  ///< the member that holds it; empty: the record itself
        std::string_view name;
        Value value;
        bool isTaken = false;
    };

    Member& Take(const Field& field);
    template <class Wanted>
    static const Wanted& ValueOf(const Member& member, const Field& field, const char* wanted);
    void Set(const Field& field, std::int32_t& number);
    void Set(const Field& field, std::int64_t& number);
    void Set(const Field& field, bool& flag);
    void Set(const Field& field, std::string& text);

    std::string m_text;  // the strings below look into it
    std::string_view m_fdn;
    std::string_view m_type;
    std::vector<Member> m_members;
};

}  // namespace NS_KX
