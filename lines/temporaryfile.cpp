#include "lines/temporaryfile.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lines/failure.h"
#include "lines/interruptions.h"

namespace NS_KX {

namespace {

// What an interruption must remove. Plain memory, since a signal handler may touch nothing else.
struct Pending {
    std::atomic<bool> isInUse{false};
    std::array<char, PATH_MAX> name{};
};

// As many as there ever are: a made-up network and the three tables of its inventory.
std::array<Pending, 4> pendings;

static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void RemovePendingAndDie(int signal) {
    for (Pending& pending : pendings) {
        if (pending.isInUse.load()) {
            unlink(pending.name.data());
        }
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void CatchInterruptions() {
    for (const int signal : INTERRUPTIONS) {
        struct sigaction action {};
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_DFL) {
            action.sa_handler = RemovePendingAndDie;
            sigaction(signal, &action, nullptr);
        }
    }
}

std::size_t Note(const std::string& name) {
    for (std::size_t place = 0; place < pendings.size(); ++place) {
        Pending& pending = pendings.at(place);
        if (!pending.isInUse.load() && name.size() < pending.name.size()) {
            std::memcpy(pending.name.data(), name.c_str(), name.size() + 1);
            pending.isInUse.store(true);
            return place;
        }
    }
    throw Failure(Cause::OUTPUT, name + ": too many open files, or too long a name");
}

// The rights of the file that is replaced; those of a new file otherwise.
mode_t RightsFor(const std::filesystem::path& target) {
    struct stat existing {};
    if (stat(target.c_str(), &existing) == 0) {
        return existing.st_mode & 07777U;
    }
    const mode_t mask = umask(0);
    umask(mask);
    return 0666U & ~mask;
}

}  // namespace

TemporaryFile::TemporaryFile(std::filesystem::path target) : m_target(std::move(target)) {
    CatchInterruptions();
    m_name.append(m_target.parent_path() / ".").append(m_target.filename()).append(".XXXXXX");
    m_descriptor = mkostemp(m_name.data(), O_CLOEXEC);
    if (m_descriptor == -1) {
        FailByErrno(Cause::OUTPUT, m_target);
    }
    try {
        m_place = Note(m_name);
    } catch (...) {
        close(m_descriptor);
        unlink(m_name.c_str());
        throw;
    }
    if (fchmod(m_descriptor, RightsFor(m_target)) != 0) {
        const int error = errno;
        Remove();
        errno = error;
        FailByErrno(Cause::OUTPUT, m_target);
    }
}

TemporaryFile::~TemporaryFile() {
    Remove();
}

void TemporaryFile::Remove() noexcept {
    if (m_descriptor != -1) {
        close(m_descriptor);
        unlink(m_name.c_str());
        pendings.at(m_place).isInUse.store(false);
        m_descriptor = -1;
    }
}

void TemporaryFile::Keep() {
    if (fsync(m_descriptor) != 0 || rename(m_name.c_str(), m_target.c_str()) != 0) {
        FailByErrno(Cause::OUTPUT, m_target);
    }
    pendings.at(m_place).isInUse.store(false);
    close(m_descriptor);
    m_descriptor = -1;
}

}  // namespace NS_KX
