#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <kx_domain_util/separatorfinder.h>

#include "support/chance.h"
#include "support/exacttext.h"
#include "support/pieces.h"
#include "support/scale.h"

namespace {

using NS_TEST::ExactView;
using NS_TEST::PiecesOneByOne;
using NS_TEST::Scaled;
using NS_UTIL::NS_FDN::SeparatorFinder;
using NS_UTIL::NS_FDN::NS_DETAIL::BLOCK_SIZE;
using NS_UTIL::NS_FDN::NS_DETAIL::FindPlainly;
using NS_UTIL::NS_FDN::NS_DETAIL::FindSeparators;

// Commas among NULs and characters that differ from a comma in a single bit.
std::string AnyText(NS_TEST::Chance& chance, std::size_t size) {
    static constexpr std::string_view CHARACTERS(",,-.<\xAC\0aZ", 9);
    const std::size_t kinds = 1 + chance.Below(CHARACTERS.size());
    std::string text;
    for (std::size_t place = 0; place < size; ++place) {
        text += CHARACTERS[CHARACTERS.size() - 1 - chance.Below(kinds)];
    }
    return text;
}

TEST(FindPlainly, SetsTheBitsOfSeparators) {
    EXPECT_EQ(FindPlainly(",a,,b", 5, ','), 0b01101U);
    EXPECT_EQ(FindPlainly(",a,,b", 3, ','), 0b00101U);
    EXPECT_EQ(FindPlainly("", 0, ','), 0U);
    EXPECT_EQ(FindPlainly(std::string(BLOCK_SIZE, ',').data(), BLOCK_SIZE, ','), ~std::uint64_t{});
}

TEST(FindSeparators, FindsWhatIsFoundPlainlyInTextsOfAnySize) {
    NS_TEST::Chance chance(11);
    for (std::size_t round = 0; round < Scaled(4000) && !HasFailure(); ++round) {
        for (std::size_t size = 0; size <= BLOCK_SIZE; ++size) {
            const std::string text = AnyText(chance, size);
            const ExactView view(text);
            const std::string_view exact = view;
            EXPECT_EQ(FindSeparators(exact.data(), size, ','), FindPlainly(exact.data(), size, ','))
                << testing::PrintToString(text);
        }
    }
}

std::vector<std::string> PiecesOf(std::string_view text) {
    std::vector<std::string> pieces;
    SeparatorFinder<','> finder(text);
    SeparatorFinder<','>::Piece piece{};
    do {
        piece = finder.Next();
        pieces.emplace_back(piece.begin, piece.end);
    } while (!finder.IsLast(piece));
    return pieces;
}

TEST(SeparatorFinder, GivesTheOnePieceOfAnEmptyText) {
    EXPECT_EQ(PiecesOf(ExactView("")), std::vector<std::string>{""});
    EXPECT_EQ(PiecesOf({}), std::vector<std::string>{""});
}

TEST(SeparatorFinder, GivesPiecesThatEndWhereABlockEnds) {
    for (std::size_t size = BLOCK_SIZE - 2; size < BLOCK_SIZE + 3; ++size) {
        for (const std::string_view tail : {"", ",", ",b", ",b,"}) {
            const std::string text = std::string(size, 'a').append(tail);
            EXPECT_EQ(PiecesOf(ExactView(text)), PiecesOneByOne(text, ',')) << size << tail;
        }
    }
}

TEST(SeparatorFinder, GivesThePiecesOfTextsOfManyBlocks) {
    NS_TEST::Chance chance(13);
    for (std::size_t round = 0; round < Scaled(40000) && !HasFailure(); ++round) {
        const std::string text = AnyText(chance, chance.Below(5 * BLOCK_SIZE));
        EXPECT_EQ(PiecesOf(ExactView(text)), PiecesOneByOne(text, ',')) << testing::PrintToString(text);
    }
}

}  // namespace
