#include "lines/appendedfile.h"

#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lines/descriptor.h"
#include "lines/failure.h"

namespace NS_KX {

namespace {

// The turn of one of several processes that append to the same file. Otherwise a line that a stopped process did not
// finish would swallow the beginning of another one's.
class Turn {
public:
    // Waits for a turn, but not for long, and not again if someone keeps the file to itself: alarms must not be held
    // back. `isKeptByOther` says so from one turn to the next.
    Turn(int file, bool& isKeptByOther) : m_file(file) {
        constexpr int MOST_TRIES = 100;
        constexpr std::chrono::milliseconds PAUSE{10};
        const int mostTries = isKeptByOther ? 1 : MOST_TRIES;
        for (int tries = 1; !Take() && errno == EWOULDBLOCK && tries < mostTries; ++tries) {
            std::this_thread::sleep_for(PAUSE);
        }
        isKeptByOther = !m_isTaken;
    }
    ~Turn() {
        if (m_isTaken) {
            flock(m_file, LOCK_UN);
        }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    bool Take() {
        m_isTaken = flock(m_file, LOCK_EX | LOCK_NB) == 0;
        return m_isTaken;
    }

    int m_file;
    bool m_isTaken = false;
};

}  // namespace

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
    const Turn turn(m_descriptor, m_isKeptByOther);
    EndLastLine();
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
    const Turn turn(m_descriptor, m_isKeptByOther);
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
