#include "lines/failure.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace NS_KX {

namespace {

// The first folder on the path to a file that this user may not enter; empty if there is none.
std::string ClosedFolder(const std::filesystem::path& file) {
    std::filesystem::path folder;
    const std::filesystem::path parent = file.parent_path();
    for (const auto& part : parent) {
        folder /= part;
        if (access(folder.c_str(), F_OK) == 0 && access(folder.c_str(), X_OK) != 0) {
            return folder;
        }
    }
    return {};
}

}  // namespace

void FailByErrno(Cause cause, const std::string& name, const std::string& what) {
    const int error = errno;
    const std::string folder = error == EACCES ? ClosedFolder(name) : std::string();
    throw Failure(cause, name + ": " + (what.empty() ? "" : what + ": ") +
                             (folder.empty() ? "" : "the folder " + folder + " cannot be entered: ") +
                             std::generic_category().message(error));
}

}  // namespace NS_KX
