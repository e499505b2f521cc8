/// Every operation that the libraries offer, as rows, for tests of all of them.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace NS_TEST {

/// The answer of an operation and the place where it is written: a record, say. It belongs to the caller.
class Answer {
public:
    Answer() = default;
    virtual ~Answer() = default;
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;

    /// Calls the operation, which overwrites the previous answer.
    virtual void Ask() = 0;
    /// Whether another answer of the same operation is equal.
    [[nodiscard]] virtual bool Equals(const Answer& other) const = 0;
};

/// An operation under its name in its library; each overload is an operation. It must outlive its answers.
struct Operation {
    std::string name;
    std::function<std::unique_ptr<Answer>()> makeAnswer;
};

/// Returns all operations. Calls none of them.
std::vector<Operation> AllOperations();

/// Texts that do not fit into the string object itself; a configuration item may have this name and this value.
inline const std::string LONG_TEXT{"a text that is too long to be kept inside of its object"};
inline const std::string LONG_KEY{"a key that is too long to be kept inside of its object"};

}  // namespace NS_TEST
