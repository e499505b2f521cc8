/// Every operation that the libraries offer, as rows: what tests of all of them walk over.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace NS_TEST {

/// What an operation answers, and where it puts it: a record, say. It belongs to the caller.
class Answer {
public:
    Answer() = default;
    virtual ~Answer() = default;
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;

    /// Calls the operation, which puts its answer over what was there before.
    virtual void Ask() = 0;
    /// Whether another answer of the same operation is the same.
    [[nodiscard]] virtual bool Equals(const Answer& other) const = 0;
};

/// An operation under the name that it has in its library; each overload is one of its own. It outlives its answers.
struct Operation {
    std::string name;
    std::function<std::unique_ptr<Answer>()> makeAnswer;
};

/// All operations. Asks the libraries nothing itself.
std::vector<Operation> AllOperations();

/// Texts that do not fit into a string object itself; a configuration item may have this name, and this value.
inline const std::string LONG_TEXT{"a text that is too long to be kept inside of its object"};
inline const std::string LONG_KEY{"a key that is too long to be kept inside of its object"};

}  // namespace NS_TEST
