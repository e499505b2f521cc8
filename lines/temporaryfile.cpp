#include "lines/temporaryfile.h"

#include <cerrno>
#include <random>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lines/failure.h"

namespace NS_KX {

namespace {

// Not derived from the target's name, which may already have the greatest length.
std::string HiddenName() {
    constexpr std::string_view LETTERS = "abcdefghijklmnopqrstuvwxyz234567";
    std::random_device random;
    std::string name = ".kx.";
    for (int letter = 0; letter < 10; ++letter) {
        name += LETTERS[random() % LETTERS.size()];
    }
    return name;
}

// The number of tries for a name that no other file has.
constexpr int MOST_TRIES = 100;

std::string NameOf(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

}  // namespace

TemporaryFile::TemporaryFile(std::filesystem::path target)
    : m_target(std::move(target)), m_targetName(m_target.filename()) {
    const std::filesystem::path folder = m_target.has_parent_path() ? m_target.parent_path() : ".";
    m_folder = open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (m_folder == -1) {
        FailByErrno(Cause::OUTPUT, m_target);
    }
    try {
        Open();
        SetRights();
    } catch (...) {
        Close();
        throw;
    }
}

TemporaryFile::~TemporaryFile() {
    Close();
}

void TemporaryFile::Open() {
    m_descriptor = openat(m_folder, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (m_descriptor != -1 && access(NameOf(m_descriptor).c_str(), F_OK) != 0) {
        close(m_descriptor);  // without /proc the file could never get a name
        m_descriptor = -1;
        errno = EOPNOTSUPP;
    }
    if (m_descriptor == -1 && (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL || errno == ENOENT)) {
        OpenNamed();
    }
    if (m_descriptor == -1) {
        const int error = errno;
        const bool isOfFolder = error == EACCES || error == EROFS;
        const std::string folder = m_target.has_parent_path() ? m_target.parent_path().string() : ".";
        errno = error;
        FailByErrno(Cause::OUTPUT, m_target, isOfFolder ? "no file can be made in the folder " + folder : "");
    }
}

void TemporaryFile::OpenNamed() {
    const InterruptionsHeld held;
    for (int tries = 0; tries < MOST_TRIES && m_descriptor == -1; ++tries) {
        m_name = HiddenName();
        m_descriptor = openat(m_folder, m_name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (m_descriptor == -1 && errno != EEXIST) {
            break;
        }
    }
    if (m_descriptor == -1) {
        m_name.clear();
        return;
    }
    m_note = std::make_unique<RemovedWhenInterrupted>(m_folder, m_name.c_str());
}

// A new file gets the usual rights. A file that replaces another takes over its rights, without the special bits.
void TemporaryFile::SetRights() {
    constexpr mode_t RIGHTS = S_IRWXU | S_IRWXG | S_IRWXO;
    constexpr mode_t WRITING = S_IWUSR | S_IWGRP | S_IWOTH;
    struct stat existing {};
    mode_t rights = 0;
    if (fstatat(m_folder, m_targetName.c_str(), &existing, 0) == 0) {
        rights = existing.st_mode & RIGHTS;
        // The bits are checked too: the superuser may write to a protected file, and would replace it unknowingly.
        if ((rights & WRITING) == 0 || faccessat(m_folder, m_targetName.c_str(), W_OK, AT_EACCESS) != 0) {
            throw Failure(Cause::OUTPUT, m_target.string() + ": is write-protected; remove it, or choose another name");
        }
    } else if (errno != ENOENT) {
        FailByErrno(Cause::OUTPUT, m_target);
    } else {
        const mode_t mask = umask(0);
        umask(mask);
        rights = (S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH) & ~mask;
    }
    if (fchmod(m_descriptor, rights) != 0) {
        FailByErrno(Cause::OUTPUT, m_target);
    }
}

void TemporaryFile::Close() noexcept {
    if (m_descriptor != -1) {
        close(m_descriptor);
        m_descriptor = -1;
    }
    if (!m_name.empty()) {
        unlinkat(m_folder, m_name.c_str(), 0);
        m_name.clear();
    }
    m_note.reset();
    if (m_folder != -1) {
        close(m_folder);
        m_folder = -1;
    }
}

void TemporaryFile::Keep() {
    if (fsync(m_descriptor) != 0) {
        FailByErrno(Cause::OUTPUT, m_target);
    }
    const InterruptionsHeld held;
    const bool isInPlace = PutInPlace();
    const int error = errno;
    if (isInPlace) {
        m_name.clear();
    }
    Close();
    if (!isInPlace) {
        errno = error;
        FailByErrno(Cause::OUTPUT, m_target);
    }
}

// A link cannot replace an existing file. A rename can, but the file needs a name first.
bool TemporaryFile::PutInPlace() {
    if (m_name.empty()) {
        if (LinkAs(m_targetName)) {
            return true;
        }
        for (int tries = 0; tries < MOST_TRIES && errno == EEXIST && m_name.empty(); ++tries) {
            if (const std::string name = HiddenName(); LinkAs(name)) {
                m_name = name;
            }
        }
    }
    return !m_name.empty() && renameat(m_folder, m_name.c_str(), m_folder, m_targetName.c_str()) == 0;
}

bool TemporaryFile::LinkAs(const std::string& name) const {
    return linkat(AT_FDCWD, NameOf(m_descriptor).c_str(), m_folder, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

}  // namespace NS_KX
