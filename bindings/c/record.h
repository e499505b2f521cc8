#pragma once

#include <exception>
#include <new>
#include <string>
#include <string_view>

#include "bindings/c/guard.h"
#include "catalogue/kinds.h"
#include "text/quoting.h"

struct kx_record {
    NS_KX::AnyRecord records;
    const NS_KX::Kind* kind = nullptr;  // null: the record holds nothing
    void* fields = nullptr;             // a record of `kind`, one of `records`
    std::string fdn;                    // what was read or written last
    // Also of failures to read the fields of a const record.
    mutable std::string words;
    mutable std::string_view error;  // of `words`, or a constant
};

namespace NS_KX::NS_C {

/// A part of a message that came from outside.
struct InQuotes {
    std::string_view text;
};

inline void AppendPart(std::string& words, std::string_view part) {
    words.append(part);
}
inline void AppendPart(std::string& words, InQuotes part) {
    AppendQuoted(words, part.text);
}

/// Makes the `parts` of a message the record's error. Returns `status`. Throws std::bad_alloc.
template <class... Parts>
kx_status Fail(const kx_record& record, kx_status status, const Parts&... parts) {
    record.words.clear();
    (AppendPart(record.words, parts), ...);
    record.error = record.words;
    return status;
}

/// One use of `record`: the status that `work` returns, or that of what it throws, which becomes the record's error.
template <class Work>
kx_status Using(const kx_record* record, Work work) noexcept {
    if (record == nullptr) {
        return KX_BAD_ARGUMENT;
    }
    record->error = {};
    kx_status status = KX_OK;
    try {
        status = work();
    } catch (const std::bad_alloc&) {
        status = KX_NO_MEMORY;
    } catch (const std::exception& failure) {
        status = Guarded([&] { return Fail(*record, KX_FAILED, failure.what()); });
    } catch (...) {
        status = KX_FAILED;
    }
    if (status != KX_OK && record->error.empty()) {
        record->error = kx_status_text(status);
    }
    return status;
}

}  // namespace NS_KX::NS_C
