/// The kinds of identifier: which level at the end of an identifier means which record, reader and writer.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace NS_KX {

/// Takes the fields of a record one after the other. Names live as long as the program.
class RecordSink {
public:
    virtual ~RecordSink() = default;
    virtual void Number(std::string_view name, std::int64_t number) = 0;
    virtual void Flag(std::string_view name, bool flag) = 0;
    virtual void Text(std::string_view name, std::string_view text) = 0;
    /// The fields up to `EndNested` are those of the record that the field of this name holds.
    virtual void BeginNested(std::string_view name) = 0;
    virtual void EndNested() = 0;
};

/// A record from which no identifier can be written; the text tells why.
class BadRecord : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Gives the fields of a record, each when it is asked for. Throws `BadRecord` for a value that its field cannot take
/// and for one that is not there.
class RecordSource {
public:
    virtual ~RecordSource() = default;
    virtual void Number(std::string_view name, std::int32_t& number) = 0;
    virtual void Number(std::string_view name, std::int64_t& number) = 0;
    virtual void Flag(std::string_view name, bool& flag) = 0;
    virtual void Text(std::string_view name, std::string& text) = 0;
    virtual void BeginNested(std::string_view name) = 0;
    virtual void EndNested() = 0;
    /// All fields were asked for: what is left over belongs to no field.
    virtual void End() = 0;
};

/// One kind of identifier. All operations may run on any number of threads; those that read or write identifiers let
/// the library's `InterfaceNotExistException` through.
class Kind {
public:
    explicit Kind(std::string_view type) : m_type(type) {}
    virtual ~Kind() = default;

    /// The name under which records of this kind are written and `--as` finds it.
    [[nodiscard]] std::string_view Type() const noexcept { return m_type; }

    /// Reads `fdn` into a fresh record and shows the record to `sink`.
    virtual void Decode(const std::string& fdn, RecordSink& sink) const = 0;
    /// Fills a fresh record from `source` and writes it into `fdn`. Throws `BadRecord` for what `source` does not give,
    /// and for a record whose fields contradict the text that it keeps.
    virtual void Encode(RecordSource& source, std::string& fdn) const = 0;
    /// Reads `fdn` and writes what was read into `canonical`.
    virtual void Rewrite(const std::string& fdn, std::string& canonical) const = 0;
    /// Shows a record that knows nothing to `sink`.
    virtual void Describe(RecordSink& sink) const = 0;

private:
    std::string_view m_type;
};

/// The tag of the last level of `fdn`, up to its first "=": its MOC.
std::string_view MocOf(std::string_view fdn);

/// The kind of `fdn`; null when its last level means none.
const Kind* FindKind(std::string_view fdn);

/// The kind whose type is called `type`; null when there is none.
const Kind* FindKindByType(std::string_view type);

/// All kinds, containers first.
std::vector<const Kind*> AllKinds();

}  // namespace NS_KX
