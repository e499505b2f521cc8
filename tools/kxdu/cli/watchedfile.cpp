#include "cli/watchedfile.h"

#include <chrono>
#include <thread>
#include <utility>

#include <sys/stat.h>

namespace NS_KX::NS_KXDU {

namespace {

using namespace std::chrono_literals;

std::int64_t InNanoseconds(const timespec& time) {
    return std::chrono::nanoseconds(std::chrono::seconds(time.tv_sec)).count() + time.tv_nsec;
}

// Whether it is less than a tenth of a second ago. A time to come does not count: clocks of other machines differ.
bool IsJustNow(std::int64_t time) {
    const auto age = std::chrono::system_clock::now().time_since_epoch() - std::chrono::nanoseconds(time);
    return age >= 0s && age < 100ms;
}

}  // namespace

WatchedFile::WatchedFile(std::filesystem::path file) : m_file(std::move(file)), m_accepted(Now()) {}

bool WatchedFile::IsChanged() const {
    return Now() != m_accepted;
}

void WatchedFile::Accept() {
    const auto begin = std::chrono::steady_clock::now();
    m_accepted = Now();
    while ((!m_accepted.exists || IsJustNow(m_accepted.modified)) && std::chrono::steady_clock::now() - begin < 1s) {
        std::this_thread::sleep_for(10ms);
        m_accepted = Now();
    }
}

WatchedFile::State WatchedFile::Now() const {
    struct stat status {};
    if (stat(m_file.c_str(), &status) != 0) {
        return {};
    }
    return {true,
            status.st_dev,
            status.st_ino,
            status.st_size,
            InNanoseconds(status.st_mtim),
            InNanoseconds(status.st_ctim)};
}

}  // namespace NS_KX::NS_KXDU
