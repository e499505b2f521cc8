#include "newfile.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <random>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace NS_STANDALONE {

namespace fs = std::filesystem;

namespace {

constexpr mode_t DEFAULT_PERMISSIONS = 0666;
constexpr mode_t OWNER_PERMISSIONS = 0600;
constexpr mode_t ALL_PERMISSIONS = 0777;  // without the bits that run a program as another user

[[noreturn]] void Fail(int error) {
    throw std::system_error(error, std::generic_category());
}

// Blocks signals while it lives, so that none ends the process between the hidden name and the final one.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t m_before{};
};

// Calls tryName with hidden names in folder until one is free, and returns that name. Throws the error of tryName if it
// is not EEXIST, or after too many tries.
template <class TryName>
std::string FindHiddenName(const fs::path& folder, TryName tryName) {
    constexpr int TRIES = 100;
    std::random_device random;
    int error = EEXIST;
    for (int attempt = 0; attempt < TRIES && error == EEXIST; ++attempt) {
        std::string name = folder / (".inventory." + std::to_string(random()));
        error = tryName(name) ? 0 : errno;
        if (error == 0) {
            return name;
        }
    }
    Fail(error);
}

}  // namespace

NewFile::NewFile(const fs::path& folder, std::string_view bytes, Access access)
    : m_folder(folder.empty() ? "." : folder),
      m_bytes(bytes),
      m_permissions(access == Access::OWNER ? OWNER_PERMISSIONS : DEFAULT_PERMISSIONS) {
    m_descriptor = open(m_folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, m_permissions);
    try {
        if (m_descriptor == -1) {
            OpenHidden();
        }
        Write();
    } catch (...) {
        Discard();
        throw;
    }
}

NewFile::~NewFile() {
    Discard();
}

void NewFile::Create(const fs::path& file) {
    // Unlike a rename, a link never replaces an existing file, and it needs no hidden name first.
    if (m_hidden.empty() && Link(file)) {
        return SyncFolder();
    }
    if (m_hidden.empty() && errno == EEXIST) {
        Fail(EEXIST);
    }
    const SignalsBlocked blocked;
    TakeHiddenName();
    if (renameat2(AT_FDCWD, m_hidden.c_str(), AT_FDCWD, file.c_str(), RENAME_NOREPLACE) == 0) {
        m_hidden.clear();
        return SyncFolder();
    }
    if (errno != EINVAL && errno != ENOSYS) {
        Fail(errno);
    }
    // The file system cannot rename without replacing: an empty file reserves the name.
    const int reserved = open(file.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, DEFAULT_PERMISSIONS);
    if (reserved == -1) {
        Fail(errno);
    }
    close(reserved);
    Rename(file);
}

void NewFile::Replace(const fs::path& file) {
    const SignalsBlocked blocked;
    TakeRightsOf(file);
    TakeHiddenName();
    TakeRightsOf(file);  // again: the name may have needed another file
    Rename(file);
}

void NewFile::OpenHidden() {
    m_hidden = FindHiddenName(m_folder, [this](const std::string& name) {
        m_descriptor = open(name.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, m_permissions);
        return m_descriptor != -1;
    });
}

void NewFile::Write() {
    for (std::string_view rest = m_bytes; !rest.empty();) {
        const ssize_t written = write(m_descriptor, rest.data(), rest.size());
        if (written == -1 && errno != EINTR) {
            Fail(errno);
        }
        rest.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    if (fsync(m_descriptor) != 0) {
        Fail(errno);
    }
}

// Gives a file without a name its first one. Returns false if it cannot; errno says why.
bool NewFile::Link(const fs::path& name) const {
    const std::string descriptor = "/proc/self/fd/" + std::to_string(m_descriptor);
    return linkat(AT_FDCWD, descriptor.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

// If a file without a name cannot get one (no hard links, no /proc), writes it once more under a hidden name.
void NewFile::TakeHiddenName() {
    if (!m_hidden.empty()) {
        return;
    }
    try {
        m_hidden = FindHiddenName(m_folder, [this](const std::string& name) { return Link(name); });
    } catch (const std::system_error&) {
        Discard();
        OpenHidden();
        Write();
    }
}

// Before the file has a name, so that no one can open it meanwhile who could not open `file`.
void NewFile::TakeRightsOf(const fs::path& file) const {
    struct stat old {};
    if (stat(file.c_str(), &old) != 0) {
        Fail(errno);
    }
    // Only the superuser may give a file away; others may at least keep its group if it is one of theirs.
    if (fchown(m_descriptor, old.st_uid, old.st_gid) != 0) {
        static_cast<void>(fchown(m_descriptor, static_cast<uid_t>(-1), old.st_gid) != 0);
    }
    if (fchmod(m_descriptor, old.st_mode & ALL_PERMISSIONS) != 0) {
        Fail(errno);
    }
}

void NewFile::Rename(const fs::path& file) {
    if (rename(m_hidden.c_str(), file.c_str()) != 0) {
        Fail(errno);
    }
    m_hidden.clear();
    SyncFolder();
}

// Writes the name to the disk too. Ignores errors: not every file system can do that, and the file is already there.
void NewFile::SyncFolder() {
    const int folder = open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder != -1) {
        static_cast<void>(fsync(folder));
        close(folder);
    }
}

void NewFile::Discard() noexcept {
    if (m_descriptor != -1) {
        close(std::exchange(m_descriptor, -1));
    }
    if (!m_hidden.empty()) {
        static_cast<void>(std::remove(m_hidden.c_str()));
        m_hidden.clear();
    }
}

}  // namespace NS_STANDALONE
