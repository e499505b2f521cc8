/// Random identifiers and records: the same seed gives the same ones everywhere.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>

#include "support/chance.h"
#include "support/examplelist.h"
#include "support/recordfields.h"

namespace NS_TEST {

/// Generates identifiers: some as writers write them, some with arbitrary levels; many are damaged.
class IdentifierGenerator {
public:
    explicit IdentifierGenerator(std::uint64_t seed) : m_chance(seed) {}

    std::string Next() {
        std::string fdn = AnyLike();
        while (m_chance.Once(2)) {
            Damage(fdn);
        }
        return fdn;
    }

private:
    std::string AnyLike() {
        switch (m_chance.Below(7)) {
            case 0:
            case 1:
                return AnyLevels();
            case 6:
                return ExampleLike();
            case 2:
                return ServiceLike();
            case 3:
                return OamLike();
            default:
                return PortLike();
        }
    }

    // An example of some kind, with other numbers.
    std::string ExampleLike() {
        std::string fdn;
        for (const char character : m_chance.From(EXAMPLES)) {
            fdn += character >= '0' && character <= '9' && m_chance.Once(2) ? Number() : std::string(1, character);
        }
        return fdn;
    }

    // A service, trail or tunnel.
    std::string ServiceLike() {
        static constexpr std::array<std::string_view, 14> HEADS{
            "PWE3=",      "NETH=",    "VSI=",    "VRF=",           "TUNNEL=", "ATMTD=",  "VEGROUP=",
            "PWE3TRAIL=", "PWTRAIL=", "TRAIL=1", "TUNNELPGTRAIL=", "VPLS=",   "TUNNEL=", "TUNNELTRAIL="};
        std::string fdn;
        AppendSometimes(fdn, "NE=");
        for (std::size_t levels = 1 + m_chance.Below(3); levels > 0; --levels) {
            fdn += ',';
            fdn += m_chance.From(HEADS);
            for (std::size_t subValues = m_chance.Below(10); subValues > 0; --subValues) {
                fdn += Number() + (subValues > 1 ? "|" : "");
            }
        }
        return fdn;
    }

    // A maintenance domain, association or point.
    std::string OamLike() {
        static constexpr std::array<std::string_view, 5> ENDS{",MEP=", ",RMEP=", ",MIP=", ",MA=", ",MEP"};
        std::string fdn;
        AppendSometimes(fdn, "NE=");
        for (const std::string_view head : {std::string_view(",MD="), std::string_view(",MA="), m_chance.From(ENDS)}) {
            if (m_chance.Once(6)) {
                continue;
            }
            fdn += head;
            fdn += m_chance.Once(2) ? "" : Number();
            fdn += m_chance.Once(4) ? "" : "|";
            fdn += m_chance.Once(3) ? "" : "name";
        }
        return fdn;
    }

    std::string PortLike() {
        std::string fdn = m_chance.Once(20) ? "ONE=3,NE=" : "NE=";
        fdn += Number();
        AppendSometimes(fdn, ",FR=");
        AppendSometimes(fdn, ",S=");
        fdn += m_chance.Once(2) ? ",CP=-1" : "";
        AppendSometimes(fdn, ",SS=");
        fdn += m_chance.Once(4) ? "" : PortLevel();
        switch (m_chance.Below(6)) {
            case 0:
                return fdn + ",SUBIF=" + Number();
            case 1:
                return fdn + ",AP=" + Number() + "|" + Number() + "|" + Number();
            case 2:
                return fdn + ",CHANNELSET=" + Number();
            case 3:
                return fdn + ",VR=" + Number() + ",VC4=" + Number();
            default:
                return fdn;
        }
    }

    std::string AnyLevels() {
        static constexpr std::array<std::string_view, 32> TAGS{"NE",
                                                               "FR",
                                                               "S",
                                                               "SS",
                                                               "CP",
                                                               "SC",
                                                               "PP",
                                                               "LP",
                                                               "SUBIF",
                                                               "AP",
                                                               "VR",
                                                               "VC4",
                                                               "MD",
                                                               "OS",
                                                               "ONE",
                                                               "",
                                                               "ne",
                                                               "NEX",
                                                               "N",
                                                               " NE",
                                                               "CHANNELSET",
                                                               "PWE3TRAIL",
                                                               "TUNNELPGTRAIL",
                                                               "MA",
                                                               "MIP",
                                                               "MEP",
                                                               "PWE3",
                                                               "NETH",
                                                               "VRF",
                                                               "TUNNEL",
                                                               "ATMTD",
                                                               "VEGROUP"};
        std::string fdn;
        for (std::size_t left = m_chance.Below(9); left > 0; --left) {
            fdn += m_chance.From(TAGS);
            fdn += m_chance.Once(10) ? "" : "=";
            for (std::size_t subValues = m_chance.Below(6); subValues > 0; --subValues) {
                fdn += Number() + (subValues > 1 ? "|" : "");
            }
            fdn += left > 1 ? "," : "";
        }
        return fdn;
    }

    std::string PortLevel() {
        static constexpr std::array<std::string_view, 9> PP_TYPES{"", "0", "16", "251", "16", "1", "-1", " 16", "x"};
        static constexpr std::array<std::string_view, 8> FB_TYPES{"",      "0",     "1025",  "65547",
                                                                  "65549", "65543", "65536", "7"};
        static constexpr std::array<std::string_view, 11> NAMES{
            "", "GE0/1", "GE0/1.100", "a\\|b", "\\", "a\\b\\|c", "a\\", ".", "x|y|z", "name=with=equals", "\\|\\|"};
        std::string level = m_chance.Once(3) ? ",LP=" : ",PP=";
        level.append(m_chance.From(PP_TYPES)).append("|").append(m_chance.From(FB_TYPES)).append("|");
        return level.append(Number()).append("|").append(m_chance.From(NAMES));
    }

    void AppendSometimes(std::string& fdn, std::string_view head) {
        if (!m_chance.Once(3)) {
            fdn.append(head).append(Number());
        }
    }

    std::string Number() {
        static constexpr std::array<std::string_view, 16> ODD{"",
                                                              "-",
                                                              "+5",
                                                              " 7",
                                                              "007",
                                                              "1x",
                                                              "3.5",
                                                              "x",
                                                              "4294967295",
                                                              "2147483648",
                                                              "-2147483649",
                                                              "99999999999999999999",
                                                              "-99999999999999999999",
                                                              "0x10",
                                                              "- 1",
                                                              "1 "};
        switch (m_chance.Below(8)) {
            case 0:
                return std::string(m_chance.From(ODD));
            case 1:
                return "-1";
            case 2:
                return "0";
            case 3:
                return std::to_string(static_cast<std::int32_t>(m_chance.Next()));
            default:
                return std::to_string(m_chance.Below(40));
        }
    }

    void Damage(std::string& fdn) {
        static constexpr std::array<std::string_view, 14> PIECES{",",
                                                                 "=",
                                                                 "|",
                                                                 "\\",
                                                                 " ",
                                                                 "-",
                                                                 ";",
                                                                 "\t",
                                                                 "\x80",
                                                                 ",,",
                                                                 "SUBIF=",
                                                                 "PP=16||2|",
                                                                 "CHANNELSET=5",
                                                                 "FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|"};
        const std::size_t at = m_chance.Below(fdn.size() + 1);
        switch (m_chance.Below(7)) {
            case 0:
                fdn.resize(at);
                break;
            case 1:
                fdn.erase(0, at);
                break;
            case 2:
                fdn.insert(at, m_chance.From(PIECES));
                break;
            case 3:
                Repeat(fdn, at);
                break;
            case 4:
                fdn.insert(at, 1, '\0');
                break;
            case 5:
                fdn.erase(at, 1 + m_chance.Below(3));
                break;
            default:
                if (at < fdn.size()) {
                    fdn[at] = static_cast<char>(m_chance.Next());
                }
                break;
        }
    }

    static void Repeat(std::string& fdn, std::size_t begin) {
        const std::string levels = fdn.substr(begin);
        fdn.append(",").append(levels);
    }

    Chance m_chance;
};

/// Generates records whose fields hold the values that writers treat specially, and others.
class RecordGenerator {
public:
    explicit RecordGenerator(std::uint64_t seed) : m_chance(seed) {}

    template <class Record>
    Record Next() {
        Record record;
        Fill(record);
        return record;
    }

    bool Flag() { return m_chance.Once(2); }
    std::int32_t Number() {
        static constexpr std::array<std::int32_t, 20> NUMBERS{-1,
                                                              -1,
                                                              0,
                                                              0,
                                                              1,
                                                              2,
                                                              3,
                                                              16,
                                                              251,
                                                              251,
                                                              1025,
                                                              65536,
                                                              65543,
                                                              65547,
                                                              65549,
                                                              65562,
                                                              1911,
                                                              1912,
                                                              std::numeric_limits<std::int32_t>::max(),
                                                              std::numeric_limits<std::int32_t>::min()};
        return m_chance.Once(8) ? static_cast<std::int32_t>(m_chance.Next()) : m_chance.From(NUMBERS);
    }

private:
    template <class Record>
    void Fill(Record& record) {
        ForEachField(record, [this](std::string_view, auto& field) {
            using Value = std::remove_reference_t<decltype(field)>;
            if constexpr (HasFields<Value>) {
                Fill(field);
            } else if constexpr (std::is_same_v<Value, std::string>) {
                field = Name();
            } else if constexpr (std::is_same_v<Value, bool>) {
                field = Flag();
            } else {
                field = Number();
            }
        });
    }

    std::string Name() {
        static constexpr std::array<std::string_view, 9> NAMES{"",  "",     "GE0/1", "GE0/1.100", "GE0/1.1.2",
                                                               ".", "a|b,", "x\\|y", "a.b"};
        return m_chance.Once(20) ? std::string(1 + m_chance.Below(700), 'n') : std::string(m_chance.From(NAMES));
    }

    Chance m_chance;
};

}  // namespace NS_TEST
