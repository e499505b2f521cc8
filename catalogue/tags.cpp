#include "catalogue/tags.h"

#include <algorithm>

#include <kx_domain_util/fdnscanner.h>
#include <kx_platform/textutil.h>

namespace NS_KX {

namespace {

constexpr auto NUMBER = SubValueKind::NUMBER;
constexpr auto OPTIONAL_NUMBER = SubValueKind::OPTIONAL_NUMBER;
constexpr auto TEXT = SubValueKind::TEXT;

constexpr SubValueArray PORT{{{OPTIONAL_NUMBER, "PP type; empty: none, or a port identified by its name"},
                              {OPTIONAL_NUMBER, "FB type; empty: none"},
                              {SubValueKind::PORT_NUMBER, "port number; 4294967295 or -1: none"},
                              {TEXT, "port name"}}};

// The only FB type whose ports may have a "|" in their name, behind a backslash.
constexpr int FB_WITH_ESCAPED_NAME = 1025;
constexpr std::size_t FB_TYPE_PLACE = 1;
constexpr std::size_t PORT_NAME_PLACE = 3;

constexpr Tag Number(std::string_view name, std::string_view meaning, std::string_view subValue) {
    return {name, meaning, 1, 1, {{{NUMBER, subValue}}}};
}

constexpr Tag Text(std::string_view name, std::string_view meaning) {
    return {
        .name = name, .meaning = meaning, .least = 1, .most = 1, .subValues = {{{TEXT, "free text"}}}, .isOpen = true};
}

constexpr Tag Named(std::string_view name, std::string_view meaning, std::string_view number) {
    return {name, meaning, 2, 2, {{{OPTIONAL_NUMBER, number}, {TEXT, "name"}}}};
}

constexpr std::array TAGS{
    Number("OS", "management system", "number"),
    Number("ONE", "container of NEs", "number"),
    Number("NE", "network element", "NE number"),
    Number("FR", "shelf", "shelf number; -1: none"),
    Number("S", "slot", "slot number; -1: none"),
    Number("CP", "card", "always -1"),
    Number("SS", "sub-slot", "sub-slot number; -1: none"),
    Number("SC", "card in the sub-slot", "always -1"),
    Tag{.name = "PP", .meaning = "physical port", .least = 4, .most = 4, .subValues = PORT, .isReadWhole = true},
    Tag{.name = "LP", .meaning = "logical port", .least = 4, .most = 4, .subValues = PORT, .isReadWhole = true},
    Number("SUBIF", "sub-interface", "sub-interface number"),
    Number("CHANNELSET", "channel set", "channel set number"),
    Number("VC4", "higher-order SDH path", "path number"),
    Number("VC12", "lower-order SDH path", "path number"),
    Tag{.name = "AP",
        .meaning = "access point",
        .least = 3,
        .most = 3,
        .subValues = {{{NUMBER, "first value"},
                       {NUMBER, "second value"},
                       {OPTIONAL_NUMBER, "sub-interface; empty: none"}}},
        .isReadWhole = true},
    Number("VR", "virtual router of an access point", "VR number"),
    Number("VEGROUP", "group", "group number"),
    Number("NETH", "Ethernet service", "service number"),
    // Nobody says what the sub-values of a tunnel mean: they are called like the fields that they fill.
    Tag{.name = "TUNNEL",
        .meaning = "tunnel",
        .least = 7,
        .most = 7,
        .subValues = {{{NUMBER, "tunnelInt0"},
                       {NUMBER, "tunnelInt1"},
                       {TEXT, "tunnelText2"},
                       {TEXT, "tunnelText3"},
                       {NUMBER, "tunnelInt4"},
                       {TEXT, "tunnelText5"},
                       {NUMBER, "tunnelInt6"}}},
        .isOpen = true,
        .isReadWhole = true},
    Text("LSP", "label-switched path"),
    Text("PW", "pseudo-wire"),
    Text("PWSW", "pseudo-wire switch"),
    Tag{.name = "PWE3",
        .meaning = "pseudo-wire service",
        .least = 2,
        .most = 2,
        .subValues = {{{NUMBER, "service type"}, {NUMBER, "service number"}}},
        .isOpen = true,
        .isReadWhole = true},
    Number("VSI", "virtual switch instance", "service number"),
    Number("VRF", "virtual routing and forwarding instance", "service number"),
    Text("VPLS", "virtual private LAN service"),
    Text("L3VPN", "layer-3 virtual private network"),
    Number("ATMTD", "ATM traffic descriptor", "descriptor number"),
    Text("PWE3TRAIL", "pseudo-wire service trail"),
    Text("TUNNELTRAIL", "tunnel trail"),
    Text("PWTRAIL", "pseudo-wire trail"),
    Text("TUNNELPGTRAIL", "tunnel protection group"),
    Named("MD", "maintenance domain", "MD number; empty: left out on this NE, or none"),
    Named("MA", "maintenance association", "MA number; empty: left out on this NE, or none"),
    Number("MEP", "maintenance end point", "end point number"),
    Number("RMEP", "remote maintenance end point", "end point number"),
    Named("MIP", "maintenance intermediate point", "MIP number; empty or 0: none"),
};

}  // namespace

std::span<const Tag> AllTags() {
    return TAGS;
}

const Tag* FindTag(std::string_view name) {
    const auto* const found = std::find_if(TAGS.begin(), TAGS.end(), [&](const Tag& tag) { return tag.name == name; });
    return found == TAGS.end() ? nullptr : found;
}

bool HasEscapedName(const Tag& tag, std::string_view value) {
    if (tag.name != "PP" && tag.name != "LP") {
        return false;
    }
    const NS_UTIL::NS_FDN::SubValues<PORT_NAME_PLACE + 1> port(value);
    return NS_UTIL::Str2Int(port[FB_TYPE_PLACE]) == FB_WITH_ESCAPED_NAME &&
           port[PORT_NAME_PLACE].find('\\') != std::string_view::npos;
}

}  // namespace NS_KX
