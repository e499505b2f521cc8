#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "catalogue/kinds.h"

namespace NS_KX {

/// Takes the fields of one record as texts under their whole names; those of a nested record are called "port.neId".
class FieldTexts : public RecordSink {
protected:
    void Text(std::string_view name, std::string_view text) override { Take(Whole(name), text); }

private:
    /// Both are valid only during the call.
    virtual void Take(std::string_view name, std::string_view text) = 0;

    void Number(std::string_view name, std::int64_t number) override { Take(Whole(name), std::to_string(number)); }
    void Flag(std::string_view name, bool flag) override { Take(Whole(name), flag ? "true" : "false"); }

    void BeginNested(std::string_view name) override { m_prefix.append(name).append("."); }
    void EndNested() override { m_prefix.clear(); }  // records are nested once at most

    std::string_view Whole(std::string_view name) {
        m_whole.assign(m_prefix).append(name);
        return m_whole;
    }

    std::string m_prefix;
    std::string m_whole;
};

}  // namespace NS_KX
