/// What the C interface answers about an identifier, beside what the catalogue and the library answer.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <kx/kx.h>

#include <kx_domain_util/domainindex.h>
#include <kx_domain_util/fdn.h>
#include <kx_domain_util/processexception.h>
#include <kx_platform/textutil.h>

#include "catalogue/kinds.h"
#include "catalogue/levelcheck.h"
#include "catalogue/pieces.h"

namespace NS_TEST {

/// The network that writers ask about: each NE has a type of its own, every third leaves OAM numbers out.
struct NetworkOfFacts {
    static constexpr std::array<std::uint16_t, 2> SUB_SLOT_NE_TYPES{1912, 7};

    static std::uint16_t TypeOf(std::int32_t ne) noexcept { return static_cast<std::uint16_t>(1910 + ne % 4); }
    static bool Omits(std::int32_t ne) noexcept { return ne % 3 == 0; }

    static constexpr kx_facts FACTS{0,
                                    SUB_SLOT_NE_TYPES.data(),
                                    SUB_SLOT_NE_TYPES.size(),
                                    nullptr,
                                    [](void* /*context*/, std::int32_t ne, std::uint16_t* type) {
                                        *type = TypeOf(ne);
                                        return true;
                                    },
                                    [](void* /*context*/, std::int32_t ne) { return Omits(ne); }};

    /// The same for the catalogue.
    class Known : public NS_UTIL::Surroundings {
    public:
        [[nodiscard]] unsigned short NEType(int ne) const override { return TypeOf(ne); }
        [[nodiscard]] bool SpellsOutSubSlot(int ne) const override { return TypeOf(ne) == 1912 || TypeOf(ne) == 7; }
        [[nodiscard]] bool IsMdNumberOmitted(int ne) const override { return Omits(ne); }
        [[nodiscard]] bool IsMaNumberOmitted(int ne) const override { return Omits(ne); }
    };
};

/// Compares. Its record and its plan are used for one identifier after the other.
class Comparison {
public:
    Comparison() {
        for (const NS_KX::Tag* const tag : NS_KX::AllTags()) {
            m_pieces.emplace_back(tag->name);
            for (std::size_t place = 0; place < tag->most + (tag->mayEscape ? 1 : 0); ++place) {
                m_pieces.push_back(std::string(tag->name) + ":" + std::to_string(place));
            }
        }
        std::vector<const char*> names;
        for (const std::string& piece : m_pieces) {
            names.push_back(piece.c_str());
            m_finder.emplace_back(*NS_KX::PieceName::Parse(piece));
        }
        Expect("kx_plan_new", kx_plan_new(names.data(), names.size(), &m_plan), KX_OK);
        m_found.resize(names.size());
    }
    ~Comparison() {
        kx_plan_free(m_plan);
        kx_record_free(m_record);
    }
    Comparison(const Comparison&) = delete;
    Comparison& operator=(const Comparison&) = delete;

    /// The first difference in words; empty if there is none.
    std::string DifferenceOf(std::string_view fdn) {
        m_difference.clear();
        CompareKind(fdn);
        CompareRecord(fdn);
        ComparePieces(fdn);
        ComparePort(fdn);
        CompareProblems(fdn);
        return m_difference;
    }

    /// The same for the record of one type, whatever the last level says.
    std::string DifferenceAs(const NS_KX::Kind& kind, std::string_view fdn) {
        m_difference.clear();
        Expect("kx_decode_as", kx_decode_as(m_record, kind.type.data(), fdn.data(), fdn.size()), KX_OK);
        CompareFields(kind, fdn);
        return m_difference;
    }

    [[nodiscard]] std::size_t CountRecords() const noexcept { return m_records; }

private:
    template <class Actual, class Expected>
    void Expect(std::string_view what, const Actual& actual, const Expected& expected) {
        if (m_difference.empty() && !(actual == expected)) {
            m_difference = std::string(what) + ": " + Shown(actual) + ", not " + Shown(expected);
        }
    }

    static std::string Shown(std::string_view text) {
        return text.data() != nullptr ? '"' + std::string(text) + '"' : "nothing";
    }
    template <class Number>
    static std::string Shown(Number number) requires(std::is_arithmetic_v<Number> || std::is_enum_v<Number>) {
        return std::to_string(static_cast<std::int64_t>(number));
    }

    static std::string_view View(kx_text text) { return {text.data, text.size}; }
    static std::string_view View(const char* text) { return text != nullptr ? text : std::string_view(); }

    void CompareKind(std::string_view fdn) {
        const NS_KX::Kind* const kind = NS_KX::FindKind(fdn);
        const char* type = nullptr;
        const char* word = nullptr;
        const kx_status expected = kind != nullptr ? KX_OK : KX_UNKNOWN_TYPE;
        Expect("kx_type", kx_type(fdn.data(), fdn.size(), &type), expected);
        Expect("kx_kind", kx_kind(fdn.data(), fdn.size(), &word), expected);
        if (kind != nullptr) {
            Expect("the type", View(type), kind->type);
            Expect("the kind", View(word), kind->word);
        }
    }

    void CompareRecord(std::string_view fdn) {
        const NS_KX::Kind* const kind = NS_KX::FindKind(fdn);
        Expect("kx_decode", kx_decode(m_record, fdn.data(), fdn.size()), kind != nullptr ? KX_OK : KX_UNKNOWN_TYPE);
        Expect("the type of the record", View(kx_record_type(m_record)),
               kind != nullptr ? kind->type : std::string_view());
        if (kind == nullptr) {
            Expect("the number of fields", kx_field_count(m_record), 0U);
            return;
        }
        ++m_records;
        CompareFields(*kind, fdn);
        CompareWriting(*kind, nullptr, NS_UTIL::Surroundings());
        CompareWriting(*kind, &NetworkOfFacts::FACTS, NetworkOfFacts::Known());
    }

    void CompareFields(const NS_KX::Kind& kind, std::string_view fdn) {
        void* const expected = m_expected.Fresh(kind.layout);
        kind.read(fdn, expected, NS_UTIL::Surroundings());
        Expect("the number of fields", kx_field_count(m_record), kind.layout.fields.size());
        for (std::size_t place = 0; place < kind.layout.fields.size(); ++place) {
            const NS_KX::Field& field = kind.layout.fields[place];
            const char* const name = kx_field_name(m_record, place);
            Expect("the name of a field", View(name), field.name);
            NS_KX::VisitField(field, expected, [&]<class Value>(const Value& value) {
                if constexpr (std::is_same_v<Value, std::string>) {
                    kx_text text{};
                    Expect("the type of a field", kx_field_type(m_record, place), KX_TEXT);
                    Expect("kx_get_text", kx_get_text(m_record, name, &text), KX_OK);
                    Expect(field.name, View(text), std::string_view(value));
                } else {
                    std::int64_t number = 0;
                    Expect("the type of a field", kx_field_type(m_record, place),
                           std::is_same_v<Value, bool> ? KX_FLAG : KX_NUMBER);
                    Expect("kx_get_number", kx_get_number(m_record, name, &number), KX_OK);
                    Expect(field.name, number, static_cast<std::int64_t>(value));
                }
            });
        }
    }

    // After `CompareFields`, whose record is written.
    void CompareWriting(const NS_KX::Kind& kind, const kx_facts* facts, const NS_UTIL::Surroundings& surroundings) {
        kx_status expected = KX_OK;
        try {
            kind.write(m_expected.Of(kind.layout), m_fdn, surroundings);
        } catch (const NS_KX::BadRecord&) {
            expected = KX_BAD_RECORD;
        } catch (const NS_UTIL::InterfaceNotExistException&) {
            expected = KX_NO_FACTS;
        }
        kx_text fdn{};
        Expect("kx_encode", kx_encode(m_record, facts, &fdn), expected);
        if (expected == KX_OK) {
            Expect("the identifier", View(fdn), std::string_view(m_fdn));
        } else {
            Expect("the identifier", View(fdn), std::string_view());
        }
    }

    void ComparePieces(std::string_view fdn) {
        Expect("kx_pieces", kx_pieces(m_plan, fdn.data(), fdn.size(), m_found.data()), KX_OK);
        for (std::size_t place = 0; place < m_pieces.size(); ++place) {
            const std::string_view expected = NS_KX::FindPiece(fdn, m_finder[place]);
            Expect(m_pieces[place], View(m_found[place]), expected);
            Expect("where " + m_pieces[place] + " is", m_found[place].data == expected.data(), true);
            kx_text piece{};
            std::int32_t number = 0;
            Expect("kx_piece", kx_piece(fdn.data(), fdn.size(), m_pieces[place].c_str(), &piece),
                   expected.data() != nullptr ? KX_OK : KX_NOT_THERE);
            Expect(m_pieces[place], View(piece), expected);
            Expect("kx_number", kx_number(fdn.data(), fdn.size(), m_pieces[place].c_str(), &number),
                   !expected.empty() ? KX_OK : KX_NOT_THERE);
            if (!expected.empty()) {
                Expect(m_pieces[place], number, NS_UTIL::Str2Int(expected));
            }
        }
    }

    void ComparePort(std::string_view fdn) {
        NS_DOMAIN::PortIndex expected;
        NS_UTIL::NS_FDN::ReadInto<NS_DOMAIN::PortIndex>(fdn, expected, NS_UTIL::Surroundings());
        const auto orNone = [](std::int32_t type) { return type != 0 ? type : -1; };
        m_room.resize(fdn.size());
        kx_port port{};
        Expect("kx_read_port", kx_read_port(fdn.data(), fdn.size(), &port, m_room.data(), m_room.size()), KX_OK);
        Expect("the NE", port.ne, expected.neId);
        Expect("the shelf", port.shelf, expected.shelfId);
        Expect("the slot", port.slot, expected.slotId);
        Expect("the sub-slot", port.sub_slot, expected.subSlotId);
        Expect("the PP type", port.pp_type, orNone(expected.ppType));
        Expect("the FB type", port.fb_type, orNone(expected.fbType));
        Expect("the port number", port.port, expected.portId);
        Expect("whether it is logical", port.is_logical, expected.isLogical);
        Expect("the name", std::string_view(port.name.size != 0 ? View(port.name) : ""),
               std::string_view(expected.portLabel));
        const auto liesIn = [&](std::string_view text) {
            return std::greater_equal<>()(port.name.data, text.data()) &&
                   std::less_equal<>()(port.name.data + port.name.size, text.data() + text.size());
        };
        Expect("whether the name is a view", port.name.data == nullptr || liesIn(fdn) || liesIn(m_room), true);
    }

    void CompareProblems(std::string_view fdn) {
        std::size_t index = 0;
        const auto compare = [&](const NS_KX::Problem& expected) {
            std::size_t column = 0;
            kx_text problem{};
            Expect("kx_problem", kx_problem(m_record, fdn.data(), fdn.size(), index, &column, &problem), KX_OK);
            Expect("the problem", View(problem), std::string_view(expected.text));
            Expect("its column", column, expected.column);
            ++index;
        };
        NS_KX::FindProblems(fdn, compare);
        std::size_t column = 0;
        kx_text problem{};
        Expect("kx_problem after the last", kx_problem(m_record, fdn.data(), fdn.size(), index, &column, &problem),
               KX_NOT_THERE);
    }

    std::string m_difference;
    kx_record* m_record = kx_record_new();
    kx_plan* m_plan = nullptr;
    std::vector<std::string> m_pieces;
    std::vector<NS_KX::PieceName> m_finder;
    std::vector<kx_text> m_found;
    NS_KX::AnyRecord m_expected;
    std::string m_fdn;
    std::string m_room;
    std::size_t m_records = 0;
};

}  // namespace NS_TEST
