#include "lines/descriptor.h"

#include <cerrno>
#include <string>

#include <poll.h>
#include <unistd.h>

#include "text/steering.h"

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

// How many bytes `text` begins with that a message may have as they are: newlines steer a terminal, but end messages.
std::size_t ShownSize(std::string_view text) noexcept {
    std::size_t size = HarmlessSize(text);
    while (size < text.size() && text[size] == '\n') {
        ++size;
        size += HarmlessSize(text.substr(size));
    }
    return size;
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
    while (!text.empty()) {
        const std::size_t shown = ShownSize(text);
        static_cast<void>(WriteAll(STDERR_FILENO, text.substr(0, shown)));
        text.remove_prefix(shown);
        if (!text.empty()) {
            const std::size_t size = SizeOfFirst(text);
            std::string escaped;  // short enough to allocate nothing: the memory may be exhausted
            AppendInHex(escaped, text.substr(0, size));
            static_cast<void>(WriteAll(STDERR_FILENO, escaped));
            text.remove_prefix(size);
        }
    }
}

}  // namespace NS_KX
