#include "catalogue/statistics.h"

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

// Knows no NE and no configuration.
constinit const NS_UTIL::Surroundings NO_SERVICES;

std::string LineAndColumn(int line, std::size_t column) {
    return std::to_string(line) + ":" + std::to_string(column);
}

Statistics Count(const std::vector<std::string>& fdns, ProblemSearch search = ProblemSearch::LEVELS) {
    IdentifierCounter counter(search, NO_SERVICES);
    int line = 0;
    for (const std::string& fdn : fdns) {
        ++line;
        counter.Count(fdn, [line](std::size_t column) { return LineAndColumn(line, column); });
    }
    return counter.Take();
}

// "value name count" of each row.
std::vector<std::string> Texts(const std::vector<CountRow>& rows) {
    std::vector<std::string> texts;
    for (const CountRow& row : rows) {
        texts.push_back(row.value + " " + row.name + " " + std::to_string(row.count));
    }
    return texts;
}

using Rows = std::vector<std::string>;

TEST(Statistics, CountKindsByTheirWords) {
    const Statistics counts = Count({"NE=1", "ONE=1,NE=1", "NE=1,FR=1", "NE=1,PP=16||1|", "NE=1,FR=1,S=2,PP=16||1|",
                                     "NE=1,LP=|65547|3|", "NE=1,XY=2", "OS=1"});
    EXPECT_EQ(Texts(KindRows(counts)), (Rows{"port  3", "ne  2", "  1", "shelf  1", "management-system  1"}))
        << "variants of a record share a word, and what ends in an unknown level has none";
    EXPECT_EQ(counts.lines, 8U);
    EXPECT_EQ(counts.problemLines, 1U);
}

TEST(Statistics, CountNesAsNumbers) {
    EXPECT_EQ(Texts(NeRows(Count({"NE=7", "NE=07,FR=1", "NE=12", "OS=1", "NE=-1"}))), (Rows{"  2", "7  2", "12  1"}));
}

TEST(Statistics, AnNeWhoseNumberIsNoneDoesNotCount) {
    const Statistics counts =
        Count({"NE=abc", "NE=,FR=1", "NE=", "NE=7x", "NE= 7", "NE=2147483648", "NE=4294967295", "NE=7|8", "NE"});
    EXPECT_EQ(Texts(NeRows(counts)), (Rows{"  8", "7  1"}));
    EXPECT_EQ(NeOf("FR=1,NE=12"), 12);
    EXPECT_EQ(NeOf("NE=-"), Statistics::NO_NE);
}

TEST(Statistics, CountFbTypesAndLevelsOfPortsAndOfWhatLiesOnThem) {
    const Statistics counts = Count({"NE=1,PP=16|810|1|", "NE=1,PP=16|811|1|,AP=1|2|", "NE=1,LP=16|4136|1|", "NE=1",
                                     "NE=1,PP=16||1|", "NE=1,PP=16|810|1"});
    EXPECT_EQ(Texts(FbTypeRows(counts)), (Rows{"  1", "810  1", "811  1", "4136 TUNNEL 1"}))
        << "a port with three sub-values is not read";
    EXPECT_EQ(Texts(LevelRows(counts)), (Rows{"  2", "12313 OTU1 2"}));
}

TEST(Statistics, CountProblemsByReasonWithTheirFirstPlaces) {
    const Statistics counts = Count({"NE=x", "NE=1,XY=2", "NE=1,FR=z", "NE=2"});
    const auto rows = ProblemRows(counts);
    EXPECT_EQ(Texts(rows), (Rows{"not a decimal number  2", "unknown tag  1"}));
    EXPECT_EQ(rows.front().place, "1:4");
    EXPECT_EQ(rows.front().text, "NE is not a decimal number: \"x\"");
    EXPECT_EQ(counts.problemLines, 3U);
}

TEST(Statistics, EveryProblemOfAnIdentifierCounts) {
    const std::string manyProblems = "A=1,B=1,C=1,D=1,E=1,F=1,G=1,H=1,I=1,J=1";
    std::size_t found = 0;
    CheckIdentifier(manyProblems, [&](const Problem&) { ++found; });
    std::uint64_t counted = 0;
    for (const CountRow& row : ProblemRows(Count({manyProblems}))) {
        counted += row.count;
    }
    EXPECT_EQ(counted, found);
    EXPECT_EQ(Count({manyProblems}).problemLines, 1U);
}

TEST(Statistics, KeepOnlyTheFirstPlaces) {
    const Statistics counts = Count(std::vector<std::string>(ProblemCount::MOST_PLACES + 5, "NE=x"));
    const ProblemCount& problem = counts.problems.at("not a decimal number");
    EXPECT_EQ(problem.count, ProblemCount::MOST_PLACES + 5);
    ASSERT_EQ(problem.places.size(), ProblemCount::MOST_PLACES);
    EXPECT_EQ(problem.places.back().place, "20:4");
}

TEST(Statistics, AddUpInTheOrderOfTheirIdentifiers) {
    Statistics all = Count({"NE=1", "NE=x"});
    all.Add(Count({"NE=1", "NE=y"}));
    EXPECT_EQ(all.lines, 4U);
    EXPECT_EQ(all.problemLines, 2U);
    EXPECT_EQ(Texts(NeRows(all)), (Rows{"  2", "1  2"}));
    const ProblemCount& problem = all.problems.at("not a decimal number");
    EXPECT_EQ(problem.count, 2U);
    EXPECT_EQ(problem.places.back().text, "NE is not a decimal number: \"y\"");
    EXPECT_EQ(problem.places.front().text, "NE is not a decimal number: \"x\"");
}

TEST(Statistics, WithoutASearchNoProblemIsFound) {
    const Statistics counts = Count({"NE=x", "NE=1,XY=2"}, ProblemSearch::NONE);
    EXPECT_EQ(counts.lines, 2U);
    EXPECT_TRUE(counts.problems.empty());
}

TEST(Statistics, ComparisonsThatNeedAServiceAreCounted) {
    const Statistics counts = Count({"NE=05", "NE=5,FR=1,S=3,CP=-1", "NE=5,FR=1"}, ProblemSearch::ALL);
    EXPECT_EQ(Texts(ProblemRows(counts)), (Rows{"would be written differently  1"}));
    EXPECT_EQ(counts.notCompared, 1U) << "how a card is written depends on the NE type";
}

TEST(Statistics, LinesThatAreNoTextCountAsProblems) {
    IdentifierCounter counter(ProblemSearch::NONE, NO_SERVICES);
    counter.CountNoText({3, "NUL byte", "NUL byte"}, [](std::size_t column) { return LineAndColumn(1, column); });
    const Statistics counts = counter.Take();
    EXPECT_EQ(Texts(KindRows(counts)), (Rows{"  1"}));
    EXPECT_EQ(Texts(NeRows(counts)), (Rows{"  1"}));
    EXPECT_EQ(ProblemRows(counts).front().place, "1:3");
    EXPECT_EQ(counter.Take().lines, 0U) << "what was taken does not count again";
}

}  // namespace
}  // namespace NS_KX
