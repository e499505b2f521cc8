/// The signals by which somebody ends the tool before it has finished.
#pragma once

#include <array>
#include <csignal>

namespace NS_KX {

inline constexpr std::array INTERRUPTIONS{SIGINT, SIGTERM, SIGHUP};

/// While it lives, an interruption of this thread waits: for what is quick, and would leave files behind.
class InterruptionsWait {
public:
    InterruptionsWait() {
        sigset_t interruptions;
        sigemptyset(&interruptions);
        for (const int signal : INTERRUPTIONS) {
            sigaddset(&interruptions, signal);
        }
        pthread_sigmask(SIG_BLOCK, &interruptions, &m_before);
    }
    ~InterruptionsWait() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    InterruptionsWait(const InterruptionsWait&) = delete;
    InterruptionsWait& operator=(const InterruptionsWait&) = delete;

private:
    sigset_t m_before{};
};

}  // namespace NS_KX
