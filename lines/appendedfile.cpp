#include "lines/appendedfile.h"

#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lines/descriptor.h"
#include "lines/failure.h"

namespace NS_KX {

AppendedFile::AppendedFile(std::filesystem::path name) : m_name(std::move(name)) {
    try {
        Open();
    } catch (...) {
        Close();
        throw;
    }
}

AppendedFile::~AppendedFile() {
    Close();
}

void AppendedFile::Write(std::string_view lines) {
    if (lines.empty()) {
        return;
    }
    if (!HasItsName()) {
        Close();
        Open();
    }
    if (!WriteAll(m_descriptor, lines)) {
        FailByErrno(Cause::OUTPUT, m_name);
    }
}

void AppendedFile::Open() {
    constexpr mode_t RIGHTS = 0666;  // less the umask
    m_descriptor = open(m_name.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, RIGHTS);
    if (m_descriptor == -1) {
        FailByErrno(Cause::OUTPUT, m_name);
    }
    EndLastLine();
}

void AppendedFile::EndLastLine() const {
    const off_t size = lseek(m_descriptor, 0, SEEK_END);
    char last = '\n';
    const bool isRead = size <= 0 || pread(m_descriptor, &last, 1, size - 1) == 1;
    if (size == -1 || !isRead || (last != '\n' && !WriteAll(m_descriptor, "\n"))) {
        FailByErrno(Cause::OUTPUT, m_name);
    }
}

bool AppendedFile::HasItsName() const {
    struct stat named {};
    struct stat opened {};
    return stat(m_name.c_str(), &named) == 0 && fstat(m_descriptor, &opened) == 0 && named.st_dev == opened.st_dev &&
           named.st_ino == opened.st_ino;
}

void AppendedFile::Close() noexcept {
    if (m_descriptor != -1) {
        close(m_descriptor);
    }
    m_descriptor = -1;
}

}  // namespace NS_KX
