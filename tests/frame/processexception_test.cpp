#include <functional>

#include <gtest/gtest.h>

#include <kx_domain_util/processexception.h>

namespace {

using NS_UTIL::InterfaceNotExistException;
using NS_UTIL::ProcessException;

TEST(ProcessException, StartsEmpty) {
    const ProcessException exception;
    EXPECT_EQ(exception.m_code, 0U);
    EXPECT_EQ(exception.m_text1.str(), "");
    EXPECT_EQ(exception.m_text2.str(), "");
    EXPECT_EQ(exception.m_text3.str(), "");
    EXPECT_EQ(exception.m_text4.str(), "");
    EXPECT_LT(static_cast<const void*>(&exception.m_code), static_cast<const void*>(&exception.m_text1));
}

TEST(ProcessException, CopiesCodeAndTexts) {
    ProcessException source;
    source.m_code = 7;
    source.m_text1 << "one";
    source.m_text2 << "two";
    source.m_text3 << "three";
    source.m_text4 << "four";

    const ProcessException copy(source);

    EXPECT_EQ(copy.m_code, 7U);
    EXPECT_EQ(copy.m_text1.str(), "one");
    EXPECT_EQ(copy.m_text2.str(), "two");
    EXPECT_EQ(copy.m_text3.str(), "three");
    EXPECT_EQ(copy.m_text4.str(), "four");
}

TEST(ProcessException, IsCopiedFromItsReadPositions) {
    ProcessException source;
    source.m_text1 << "read rest";
    std::string word;
    source.m_text1 >> word;

    ProcessException first(source);
    const ProcessException second(source);

    EXPECT_EQ(first.m_text1.str(), " rest") << "a copy holds only the unread text";
    EXPECT_EQ(second.m_text1.str(), "") << "the first copy has read all";
    EXPECT_EQ(source.m_text1.str(), "read rest") << "copying leaves the text itself unchanged";
}

TEST(ProcessException, IsReadToItsEndWithoutExceptions) {
    ProcessException source;
    source.m_text1 << "text";
    ProcessException copy(source);
    std::string word;
    EXPECT_NO_THROW(copy.m_text1 >> word >> word);
    EXPECT_TRUE(copy.m_text1.fail()) << "there is only one word to read";
}

TEST(ProcessException, CanBeWrittenToAfterCopying) {
    ProcessException source;
    ProcessException copy(source);
    copy.m_text1 << "new";
    source.m_text4 << "more";
    EXPECT_EQ(copy.m_text1.str(), "new");
    EXPECT_EQ(source.m_text4.str(), "more");
}

TEST(ProcessException, TakesNoConstSource) {
    static_assert(std::is_constructible_v<ProcessException, ProcessException&>);
    static_assert(!std::is_constructible_v<ProcessException, const ProcessException&>);
}

TEST(ProcessException, IsAStandardException) {
    const ProcessException exception;
    const std::exception& base = exception;
    EXPECT_STREQ(base.what(), std::exception().what());
}

TEST(InterfaceNotExistException, TakesOverItsCause) {
    ProcessException cause;
    cause.m_code = InterfaceNotExistException::INTERFACE_NOT_EXIST;
    cause.m_text3 << "three";
    const InterfaceNotExistException exception(cause);
    EXPECT_EQ(exception.m_code, 0x41180004U);
    EXPECT_EQ(exception.m_text3.str(), "three");
}

TEST(InterfaceNotExistException, CanBeCaughtAsEachOfItsBases) {
    ProcessException cause;
    cause.m_code = 7;
    EXPECT_THROW(throw InterfaceNotExistException(cause), ProcessException);
    EXPECT_THROW(throw InterfaceNotExistException(cause), std::exception);
    EXPECT_EQ(InterfaceNotExistException().m_code, 0U) << "the thrower sets the code";
}

}  // namespace
