/// What the verbs that read identifiers say of lines that look wrong.
#pragma once

#include <span>
#include <string_view>

#include "catalogue/kinds.h"
#include "catalogue/pieces.h"
#include "catalogue/tagorder.h"
#include "lines/linerun.h"

namespace NS_KX::NS_KXDU {

class Verb;

/// Throws `Failure` with `Cause::INPUT` if `line`, the first of a file, shows that the file plainly holds something
/// else than identifiers: JSON, CSV in quotes, a table of kxdu. The message says what to do.
void RefuseOtherThanIdentifiers(std::string_view line);

/// The kind of `line`; null, and reports why, if it is of none.
const Kind* KindOf(std::string_view line, LineResult& result);

/// Adds `--strict-tags` to `verb`.
void AddStrictTags(Verb& verb, bool& areTagsStrict);

/// What happens to lines whose tags are unknown or out of place. The library reads them leniently, so the tool counts
/// them, or rejects them if the user asks for it. One thread at a time.
class TagWatch {
public:
    explicit TagWatch(bool isStrict) noexcept : m_isStrict(isStrict) {}

    /// Sets what the summary says.
    static void Describe(LineWork& work);

    /// Whether `line` is to be converted; notes or reports in `result` what is wrong with its tags.
    bool Accepts(std::string_view line, LineResult& result) {
        return m_order.IsKeptBy(line) || AcceptsOdd(line, result);
    }

    /// The same for a line whose pieces are wanted too.
    bool Accepts(std::string_view line, const PieceFinder& finder, std::span<std::string_view> found,
                 LineResult& result) {
        return finder.Find(line, found, m_order) || AcceptsOdd(line, result);
    }

private:
    [[nodiscard]] bool AcceptsOdd(std::string_view line, LineResult& result) const;

    bool m_isStrict;
    TagOrder m_order;
};

}  // namespace NS_KX::NS_KXDU
