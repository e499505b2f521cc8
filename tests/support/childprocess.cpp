#include "support/childprocess.h"

#include <array>
#include <cstdio>
#include <cstdlib>

#include <sys/wait.h>
#include <unistd.h>

namespace NS_TEST {

std::optional<std::string> InChildProcess(const std::function<std::string()>& say) {
    constexpr unsigned PATIENCE = 300;
    std::array<int, 2> ends{};
    std::fflush(nullptr);
    if (pipe(ends.data()) != 0) {
        return std::nullopt;
    }
    const pid_t child = fork();
    if (child == 0) {
        alarm(PATIENCE);
        const std::string said = say();
        const bool isWritten = write(ends[1], said.data(), said.size()) == static_cast<ssize_t>(said.size());
        std::exit(isWritten ? 0 : 1);  // not _exit: sanitizers report at the end
    }
    close(ends[1]);
    std::string said;
    std::array<char, 4096> piece{};
    for (ssize_t size = 1; size > 0;) {
        size = read(ends[0], piece.data(), piece.size());
        said.append(piece.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
    }
    close(ends[0]);
    int status = 0;
    const bool isEnded = child > 0 && waitpid(child, &status, 0) == child;
    return isEnded && WIFEXITED(status) && WEXITSTATUS(status) == 0 ? std::optional(said) : std::nullopt;
}

}  // namespace NS_TEST
