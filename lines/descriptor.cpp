#include "lines/descriptor.h"

#include <cerrno>

#include <poll.h>
#include <unistd.h>

namespace NS_KX {

namespace {

// Whether the call that just failed may succeed if it is repeated. Waits until then.
bool MayTryAgain(int descriptor, short event) noexcept {
    if (errno == EINTR) {
        return true;
    }
    if (errno != EAGAIN && errno != EWOULDBLOCK) {
        return false;
    }
    pollfd waited{descriptor, event, 0};
    return poll(&waited, 1, -1) != -1 || errno == EINTR;
}

}  // namespace

Descriptor::~Descriptor() {
    if (m_number > STDIN_FILENO) {
        close(m_number);
    }
}

ssize_t ReadSome(int descriptor, char* memory, std::size_t size) noexcept {
    ssize_t count = 0;
    do {
        count = read(descriptor, memory, size);
    } while (count == -1 && MayTryAgain(descriptor, POLLIN));
    return count;
}

bool WriteAll(int descriptor, std::string_view text) noexcept {
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (!MayTryAgain(descriptor, POLLOUT)) {
            return false;
        }
    }
    return true;
}

void WriteMessage(std::string_view text) noexcept {
    static_cast<void>(WriteAll(STDERR_FILENO, text));
}

}  // namespace NS_KX
