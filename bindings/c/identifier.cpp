#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include <kx_platform/textutil.h>

#include "bindings/c/guard.h"
#include "catalogue/kinds.h"
#include "catalogue/pieces.h"

using namespace NS_KX;
using namespace NS_KX::NS_C;

struct kx_plan {
    std::vector<PieceFinder> passes;
};

namespace {

// So many pieces are found in one pass that the answers need no memory but the stack.
constexpr std::size_t PIECES_OF_A_PASS = 16;

// None if no identifier has such a piece.
std::optional<PieceName> NameOf(const char* piece) {
    return piece != nullptr ? PieceName::ParseKnown(piece) : std::nullopt;
}

// Puts what `get` takes from the kind of an identifier into `*text`.
template <class Get>
kx_status TellKind(const char* fdn, size_t size, const char** text, Get get) {
    return Guarded([&]() -> kx_status {
        if (!IsText(fdn, size) || text == nullptr) {
            return KX_BAD_ARGUMENT;
        }
        const Kind* const kind = FindKind(ViewOf(fdn, size));
        if (kind == nullptr) {
            return KX_UNKNOWN_TYPE;
        }
        *text = get(*kind).data();
        return KX_OK;
    });
}

// Calls `use` with a piece that is there.
template <class Use>
kx_status UsePiece(const char* fdn, size_t size, const char* piece, bool hasOutput, Use use) {
    return Guarded([&]() -> kx_status {
        const auto name = NameOf(piece);
        if (!IsText(fdn, size) || !name || !hasOutput) {
            return KX_BAD_ARGUMENT;
        }
        const std::string_view found = FindPiece(ViewOf(fdn, size), *name);
        return found.data() != nullptr ? use(found) : KX_NOT_THERE;
    });
}

}  // namespace

kx_status kx_type(const char* fdn, size_t size, const char** type) {
    return TellKind(fdn, size, type, [](const Kind& kind) { return kind.type; });
}

kx_status kx_kind(const char* fdn, size_t size, const char** kind) {
    return TellKind(fdn, size, kind, [](const Kind& found) { return found.word; });
}

kx_status kx_piece(const char* fdn, size_t size, const char* piece, kx_text* text) {
    return UsePiece(fdn, size, piece, text != nullptr, [&](std::string_view found) -> kx_status {
        *text = TextOf(found);
        return KX_OK;
    });
}

kx_status kx_number(const char* fdn, size_t size, const char* piece, int32_t* number) {
    return UsePiece(fdn, size, piece, number != nullptr, [&](std::string_view found) -> kx_status {
        if (found.empty()) {
            return KX_NOT_THERE;
        }
        *number = NS_UTIL::Str2Int(found);
        return KX_OK;
    });
}

// ---- Plans ----------------------------------------------------------------------------------------------------------

kx_status kx_plan_new(const char* const* pieces, size_t count, kx_plan** plan) {
    return Guarded([&]() -> kx_status {
        if ((pieces == nullptr && count != 0) || plan == nullptr) {
            return KX_BAD_ARGUMENT;
        }
        auto made = std::make_unique<kx_plan>();
        for (std::size_t begin = 0; begin < count; begin += PIECES_OF_A_PASS) {
            std::vector<PieceName> names;
            for (std::size_t place = begin; place < std::min(count, begin + PIECES_OF_A_PASS); ++place) {
                const auto name = NameOf(pieces[place]);
                if (!name) {
                    return KX_BAD_ARGUMENT;
                }
                names.push_back(*name);
            }
            made->passes.emplace_back(std::move(names));
        }
        *plan = made.release();
        return KX_OK;
    });
}

void kx_plan_free(kx_plan* plan) {
    delete plan;
}

kx_status kx_pieces(const kx_plan* plan, const char* fdn, size_t size, kx_text* out) {
    return Guarded([&]() -> kx_status {
        if (plan == nullptr || !IsText(fdn, size) || (out == nullptr && !plan->passes.empty())) {
            return KX_BAD_ARGUMENT;
        }
        const std::string_view text = ViewOf(fdn, size);
        for (const PieceFinder& pass : plan->passes) {
            std::array<std::string_view, PIECES_OF_A_PASS> room;
            const std::span found(room.data(), pass.Names().size());
            pass.Find(text, found);
            out = std::transform(found.begin(), found.end(), out, TextOf);
        }
        return KX_OK;
    });
}
