#include "lines/interruptions.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <thread>
#include <vector>

#include <unistd.h>

#include "lines/failure.h"

namespace NS_KX {

namespace {

// Plain memory and lock-free atomics: a signal handler may touch nothing else.
struct Noted {
    std::atomic<bool> isInUse{false};
    int folder = -1;
    std::array<char, 32> name{};
};

// A run writes at most four files at once: a sample network and the three tables of its inventory. There is also room
// for two runs in one process, as in tests.
std::array<Noted, 8> notedFiles;

std::atomic<int> waits{0};          // `InterruptionsHeld` objects
std::atomic<int> handlers{0};       // that are running, or that have begun to end the process
std::atomic<int> waitingSignal{0};  // came while there was an `InterruptionsHeld`

static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free);

bool IsFault(int signal) {
    return signal == SIGSEGV || signal == SIGBUS || signal == SIGFPE || signal == SIGILL || signal == SIGTRAP ||
           signal == SIGSYS;
}

// As in Dekker's algorithm, each side announces itself before it looks at the other, so at least one sees the other.
extern "C" void Interrupt(int signal, siginfo_t* info, void* /*context*/) {
    if (IsFault(signal) && info->si_code > 0) {  // signals of terminals and limits have such codes too
        std::signal(signal, SIG_DFL);            // the fault occurs again and ends the process
        return;
    }
    const int error = errno;
    handlers.fetch_add(1);
    if (waits.load() != 0) {
        waitingSignal.store(signal);
        handlers.fetch_sub(1);
        errno = error;
        return;
    }
    for (const Noted& noted : notedFiles) {
        if (noted.isInUse.load()) {
            unlinkat(noted.folder, noted.name.data(), 0);
        }
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);  // takes effect when this function returns
}

void WaitForHandlers() {
    while (handlers.load() != 0) {
        std::this_thread::yield();
    }
}

// All signals that end a process by default and can be caught; also those for faults, which other processes may send.
std::vector<int> Interruptions() {
    std::vector<int> signals{SIGHUP,    SIGINT,  SIGQUIT,   SIGUSR1, SIGUSR2, SIGPIPE, SIGALRM, SIGTERM,
                             SIGXCPU,   SIGPROF, SIGVTALRM, SIGIO,   SIGPWR,  SIGXFSZ, SIGSEGV, SIGBUS,
                             SIGSTKFLT, SIGFPE,  SIGILL,    SIGABRT, SIGTRAP, SIGSYS};
    for (int signal = SIGRTMIN; signal <= SIGRTMAX; ++signal) {
        signals.push_back(signal);
    }
    return signals;
}

bool CatchInterruptions() {
    for (const int signal : Interruptions()) {
        struct sigaction action {};
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_DFL) {
            action.sa_sigaction = Interrupt;
            action.sa_flags = SA_RESTART | SA_SIGINFO;
            sigaction(signal, &action, nullptr);
        }
    }
    return true;
}

}  // namespace

InterruptionsHeld::InterruptionsHeld() {
    static const bool isCaught = CatchInterruptions();
    static_cast<void>(isCaught);
    waits.fetch_add(1);
    WaitForHandlers();
}

InterruptionsHeld::~InterruptionsHeld() {
    if (waits.fetch_sub(1) == 1) {
        WaitForHandlers();
        if (const int signal = waitingSignal.exchange(0); signal != 0) {
            std::raise(signal);
        }
    }
}

RemovedWhenInterrupted::RemovedWhenInterrupted(int folder, const char* name) : m_place(0) {
    while (m_place < notedFiles.size() && notedFiles.at(m_place).isInUse.load()) {
        ++m_place;
    }
    if (m_place == notedFiles.size() || std::strlen(name) >= notedFiles.at(m_place).name.size()) {
        throw Failure(Cause::OUTPUT, std::string(name) + ": too many files are written at once");
    }
    Noted& noted = notedFiles.at(m_place);
    noted.folder = folder;
    std::strcpy(noted.name.data(), name);  // NOLINT: its size was compared
    noted.isInUse.store(true);
}

RemovedWhenInterrupted::~RemovedWhenInterrupted() {
    notedFiles.at(m_place).isInUse.store(false);
}

}  // namespace NS_KX
