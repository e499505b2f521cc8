#include "lines/output.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "lines/descriptor.h"
#include "lines/failure.h"
#include "lines/fileinuse.h"

namespace NS_KX {

namespace {

// Follows a link, so that it still leads to the file afterwards; also a link to a missing file.
std::filesystem::path Target(std::filesystem::path file) {
    constexpr int MOST_LINKS = 40;  // the limit of the kernel
    std::error_code error;
    for (int links = 0; std::filesystem::is_symlink(file, error); ++links) {
        if (links == MOST_LINKS) {
            errno = ELOOP;
            FailByErrno(Cause::OUTPUT, file);
        }
        file = file.parent_path() / std::filesystem::read_symlink(file, error);
    }
    return file;
}

bool IsDevice(const std::filesystem::path& file) {
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
}

}  // namespace

Output::Output(const std::filesystem::path& file, Mode mode) {
    if (file.empty() || file == "-" || file == "/dev/stdout") {
        m_name = "standard output";
        m_descriptor = STDOUT_FILENO;
    } else if (file == "/dev/stderr") {
        m_name = file;
        m_descriptor = STDERR_FILENO;
    } else if (IsDevice(file)) {
        m_name = file;
        m_device = m_descriptor = open(file.c_str(), O_WRONLY | O_CLOEXEC);
        if (m_device == -1) {
            FailByErrno(Cause::OUTPUT, m_name);
        }
    } else {
        m_name = file;
        const std::filesystem::path target = Target(file);
        RefuseJournalOfDatabase(target);
        m_encoder = MakeEncoder(m_name);
        if (mode == Mode::APPEND) {
            OpenToAppend(target);
        } else {
            m_file.emplace(target);
            m_descriptor = m_file->Descriptor();
        }
    }
}

Output::~Output() {
    if (m_device != -1) {
        close(m_device);
    }
}

void Output::OpenToAppend(const std::filesystem::path& target) {
    if (m_encoder) {
        throw Failure(Cause::INPUT, m_name + ": lines cannot be appended to a compressed file; choose another name");
    }
    m_appended.emplace(target);
}

void Output::Write(std::string_view text) {
    if (m_appended) {
        m_appended->Write(text);
        return;
    }
    if (!m_encoder) {
        WriteRaw(text);
        return;
    }
    constexpr std::size_t MOST_AT_ONCE = std::size_t{256} << 10U;
    while (!text.empty()) {
        const std::string_view part = text.substr(0, MOST_AT_ONCE);
        text.remove_prefix(part.size());
        m_compressed.clear();
        m_encoder->Encode(part, false, m_compressed);
        WriteRaw(m_compressed);
    }
}

void Output::WriteRaw(std::string_view bytes) {
    if (!WriteAll(m_descriptor, bytes)) {
        if (errno == EPIPE) {
            throw ClosedPipe();
        }
        FailByErrno(Cause::OUTPUT, m_name);
    }
}

void Output::Complete() {
    if (m_encoder) {
        m_compressed.clear();
        m_encoder->Encode({}, true, m_compressed);
        WriteRaw(m_compressed);
    }
    if (m_file) {
        m_file->Keep();
    }
}

bool Output::IsTerminal() const {
    return isatty(m_descriptor) == 1;
}

void WriteWhole(const std::filesystem::path& file, std::string_view text) {
    Output output(file);
    output.Write(text);
    output.Complete();
}

}  // namespace NS_KX
