/// Compares scanners and finders with a splitter that looks at one character after the other.
#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>

#include "fuzz/input.h"
#include "support/exacttext.h"
#include "support/literalresidutil.h"
#include "support/pieces.h"

namespace {

using namespace NS_UTIL::NS_FDN;
using namespace NS_UTIL::NS_FDN::NS_DETAIL;
using NS_FUZZ::ExpectEqual;
using NS_TEST::ExactView;
using NS_TEST::LiteralResIDUtil;
using NS_TEST::PiecesOneByOne;

using Texts = std::vector<std::string>;

Texts SubValuesOf(std::string_view value) {
    Texts subValues;
    SubValueScanner scanner(value);
    std::string_view subValue;
    while (scanner.Next(subValue)) {
        subValues.emplace_back(subValue);
    }
    return subValues;
}

constexpr std::size_t FEW = 3;

Texts FirstSubValuesOf(std::string_view value) {
    const SubValues<FEW> few(value);
    Texts subValues;
    for (std::size_t place = 0; place < few.Count(); ++place) {
        subValues.emplace_back(few[place]);
    }
    ExpectEqual(few[few.Count()], "", "what is not there", value);
    return subValues;
}

Texts FirstOf(Texts texts) {
    texts.resize(std::min(texts.size(), FEW));
    return texts;
}

void CompareBlocks(std::string_view text) {
    std::string_view rest = text;
    for (; rest.size() >= BLOCK_SIZE; rest.remove_prefix(1)) {
        const std::uint64_t expected = FindPlainly(rest.data(), BLOCK_SIZE, ',');
        ExpectEqual(FindSeparators(rest.data(), BLOCK_SIZE, ','), expected, "FindSeparators",
                    rest.substr(0, BLOCK_SIZE));
    }
    for (; !rest.empty(); rest.remove_prefix(1)) {
        ExpectEqual(FindSeparators(rest.data(), rest.size(), ','), FindPlainly(rest.data(), rest.size(), ','),
                    "FindSeparators", rest);
    }
}

template <char Separator>
void ComparePieces(std::string_view text) {
    Texts pieces;
    SeparatorFinder<Separator> finder(text);
    typename SeparatorFinder<Separator>::Piece piece{};
    do {
        piece = finder.Next();
        pieces.emplace_back(piece.begin, piece.end);
    } while (!finder.IsLast(piece));
    ExpectEqual(pieces, PiecesOneByOne(text, Separator), "the pieces", text);
}

void CompareLevels(std::string_view fdn) {
    const Texts pieces = fdn.empty() ? Texts{} : PiecesOneByOne(fdn, ',');
    LevelScanner scanner(fdn);
    Level level;
    const char* next = fdn.data();
    for (const std::string& piece : pieces) {
        std::string tag;
        Texts subValues;
        LiteralResIDUtil::ResolveMocLevelObj(piece, tag, subValues);
        const bool hasEquals = piece.find('=') != std::string::npos;

        ExpectEqual(scanner.Next(level), true, "the number of levels", fdn);
        ExpectEqual(level.tag, tag, "a tag", fdn);
        ExpectEqual(level.HasEquals(), hasEquals, "HasEquals", piece);
        ExpectEqual(level.value, hasEquals ? piece.substr(tag.size() + 1) : "", "a value", fdn);
        ExpectEqual(SubValuesOf(level.value), subValues, "the sub-values", fdn);
        ExpectEqual(FirstSubValuesOf(level.value), FirstOf(subValues), "the first sub-values", fdn);
        ExpectEqual(static_cast<const void*>(level.tag.data()), static_cast<const void*>(next), "a place", fdn);
        next += piece.size() + 1;
    }
    ExpectEqual(scanner.HasMore(), false, "HasMore", fdn);
    ExpectEqual(scanner.Next(level), false, "what comes after the last level", fdn);
}

template <Tag Wanted, class Levels>
bool CompareLevel(const Levels& levels, const LiteralResIDUtil::Map& map, std::string_view fdn) {
    const auto level = map.find(std::string(Wanted.Text()));
    const bool isThere = level != map.end();
    ExpectEqual(levels.template Has<Wanted>(), isThere, Wanted.Text(), fdn);
    ExpectEqual(SubValuesOf(levels.template Value<Wanted>()), isThere ? level->second : Texts{}, Wanted.Text(), fdn);
    const auto pieces = PiecesOneByOne(fdn, ',');
    const auto isWanted = [](const std::string& piece) { return SplitLevel(piece).tag == Wanted.Text(); };
    return std::count_if(pieces.begin(), pieces.end(), isWanted) > 1;
}

template <Tag... Tags>
void CompareFound(std::string_view fdn, const LiteralResIDUtil::Map& map) {
    const LevelFinder<Tags...> levels(fdn);
    const bool isRepeated = (int{CompareLevel<Tags>(levels, map, fdn)} + ...) != 0;
    ExpectEqual(isRepeated && !levels.MayRepeat(), false, "a repetition that is not told", fdn);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = NS_FUZZ::ToText(data, size);
    const ExactView exact(text);
    CompareBlocks(exact);
    ComparePieces<','>(exact);
    ComparePieces<'|'>(exact);
    CompareLevels(exact);

    LiteralResIDUtil::Map map;
    LiteralResIDUtil::Fdn2MocLvlValueMap(std::string(text), map);
    CompareFound<"NE", "FR", "S", "SS", "PP", "LP">(exact, map);
    CompareFound<"MD", "MA", "MIP", "MEP", "RMEP", "NE">(exact, map);
    CompareFound<"S", "SUBIF", "AP">(exact, map);
    CompareFound<"TUNNEL", "PWE3">(exact, map);
    CompareFound<"OS">(exact, map);
    return 0;
}
