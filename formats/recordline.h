#pragma once

#include <memory>
#include <string_view>

#include "formats/recordreader.h"

namespace NS_KX {

/// Reads JSON lines as `decode` writes them: {"fdn":...,"type":...,"record":{...}}. The members may have any order, and
/// "fdn" may be missing.
class RecordLine : public RecordReader {
public:
    explicit RecordLine(const Kind* usual = nullptr);
    ~RecordLine() override;

    void Read(std::string_view line) override;

private:
    class Reader;

    std::unique_ptr<Reader> m_reader;  // hides the parser's headers, which take long to compile
};

}  // namespace NS_KX
