#include "catalogue/kinds.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include <kx_domain_util/fdnscanner.h>

#include "text/quoting.h"

namespace NS_KX {

namespace {

// What a tag leads to.
struct TagEntry {
    const Tag* tag = nullptr;
    std::vector<const Kind*> kinds;  // of identifiers that end in it
};

class Catalogue {
public:
    Catalogue() {
        for (const Family* const family : {&EQUIPMENT, &PORTS, &SERVICES, &OAM}) {
            for (const Tag& tag : family->tags) {
                tags.push_back(&tag);
                byTag[tag.name].tag = &tag;
            }
            for (const Kind& kind : family->kinds) {
                kinds.push_back(&kind);
                byType[kind.type] = &kind;
                AddToTags(kind);
            }
        }
    }

    std::vector<const Kind*> kinds;
    std::vector<const Tag*> tags;
    std::unordered_map<std::string_view, TagEntry> byTag;
    std::unordered_map<std::string_view, const Kind*> byType;

private:
    void AddToTags(const Kind& kind) {
        for (const std::string_view tag : kind.lastTags) {
            if (!tag.empty()) {
                byTag[tag].kinds.push_back(&kind);
            }
        }
    }
};

// Never destroyed: other threads may still read while the process ends.
const Catalogue& TheCatalogue() {
    static const Catalogue& catalogue = *new Catalogue;
    return catalogue;
}

}  // namespace

std::span<const Kind* const> AllKinds() {
    return TheCatalogue().kinds;
}

const Kind* FindKind(std::string_view fdn) {
    const auto& byTag = TheCatalogue().byTag;
    const auto entry = byTag.find(NS_UTIL::NS_FDN::LastTag(fdn));
    if (entry == byTag.end()) {
        return nullptr;
    }
    for (const Kind* const kind : entry->second.kinds) {
        if (kind->applies == nullptr || kind->applies(fdn)) {
            return kind;
        }
    }
    return nullptr;
}

std::string OfNoKind(std::string_view fdn) {
    return std::string(NO_KIND_ENDS_IN) + Quoted(NS_UTIL::NS_FDN::LastTag(fdn));
}

const Kind* FindKindByType(std::string_view type) {
    const auto& byType = TheCatalogue().byType;
    const auto kind = byType.find(type);
    return kind != byType.end() ? kind->second : nullptr;
}

std::span<const Tag* const> AllTags() {
    return TheCatalogue().tags;
}

const Tag* FindTag(std::string_view name) {
    const auto& byTag = TheCatalogue().byTag;
    const auto entry = byTag.find(name);
    return entry != byTag.end() ? entry->second.tag : nullptr;
}

const Field* FindField(const Kind& kind, std::string_view name) {
    const auto fields = kind.layout.fields;
    const auto field = std::find_if(fields.begin(), fields.end(), [&](const Field& each) { return each.name == name; });
    return field != fields.end() ? &*field : nullptr;
}

bool IsFieldOfSomeKind(std::string_view name) {
    const auto kinds = AllKinds();
    return std::any_of(kinds.begin(), kinds.end(), [&](const Kind* kind) { return FindField(*kind, name) != nullptr; });
}

}  // namespace NS_KX
