#include "lines/fileinuse.h"

#include <fstream>
#include <system_error>

#include "lines/failure.h"

namespace NS_KX {

namespace {

// Empty if the system cannot say, for example in a removed current folder.
std::filesystem::path WholePath(const std::filesystem::path& file) {
    std::error_code error;
    // Made absolute first: weakly_canonical leaves a missing bare name relative.
    const auto absolute = std::filesystem::absolute(file, error);
    auto whole = error ? absolute : std::filesystem::weakly_canonical(absolute, error);
    return error ? std::filesystem::path() : whole;
}

bool IsDatabase(const std::filesystem::path& file) {
    constexpr std::string_view HEAD = "SQLite format 3";
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        return false;
    }
    std::string begin(HEAD.size(), '\0');
    std::ifstream(file, std::ios::binary).read(begin.data(), static_cast<std::streamsize>(begin.size()));
    return begin == HEAD;
}

}  // namespace

bool IsSameFile(const std::filesystem::path& one, const std::filesystem::path& other) {
    std::error_code error;
    if (std::filesystem::exists(one, error) && std::filesystem::exists(other, error)) {
        return std::filesystem::is_regular_file(one, error) && std::filesystem::equivalent(one, other, error);
    }
    const auto whole = WholePath(one);
    return !whole.empty() && whole == WholePath(other);
}

void RefuseReplacing(const std::vector<FileInUse>& filesInUse, const std::string& target, std::string_view written) {
    if (target.empty() || target == "-") {
        return;
    }
    for (const auto& [name, role] : filesInUse) {
        if (IsSameFile(target, name)) {
            throw Failure(Cause::INPUT,
                          std::string(target).append(": ").append(written).append(" would replace the ").append(role));
        }
    }
}

void RefuseJournalOfDatabase(const std::filesystem::path& target) {
    for (const std::string_view suffix : {"-journal", "-wal", "-shm"}) {
        std::string name = target;
        if (!name.ends_with(suffix)) {
            continue;
        }
        name.resize(name.size() - suffix.size());
        if (IsDatabase(name)) {
            throw Failure(Cause::INPUT, target.string() + ": would be taken for a journal of the database " + name +
                                            ", and deleted; choose another name");
        }
    }
}

}  // namespace NS_KX
