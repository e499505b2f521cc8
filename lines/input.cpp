#include "lines/input.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <exception>
#include <mutex>
#include <string_view>
#include <thread>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>

#include "lines/compression.h"
#include "lines/descriptor.h"
#include "lines/failure.h"

namespace NS_KX {

namespace {

// The usual capacity of a pipe, so that one read takes everything that waits in it.
constexpr std::size_t FIRST_READ = std::size_t{64} << 10U;

}  // namespace

// A thread that reads and decompresses, with the text that waits for the reader.
class Decompression {
public:
    Decompression(int descriptor, std::string name, std::string head, std::unique_ptr<Decoder> decoder,
                  std::atomic<std::uint64_t>& bytesRead)
        : m_descriptor(descriptor),
          m_name(std::move(name)),
          m_raw(std::move(head)),
          m_decoder(std::move(decoder)),
          m_bytesRead(bytesRead),
          m_wakeUp(eventfd(0, EFD_CLOEXEC)) {
        if (m_wakeUp.Get() == -1) {
            FailByErrno(Cause::INPUT, m_name);
        }
        m_thread = std::thread([this] { Run(); });
    }

    ~Decompression() {
        {
            const std::lock_guard lock(m_mutex);
            m_isStopped = true;
        }
        m_changed.notify_all();
        eventfd_write(m_wakeUp.Get(), 1);  // the thread may be waiting for an idle pipe
        m_thread.join();
    }
    Decompression(const Decompression&) = delete;
    Decompression& operator=(const Decompression&) = delete;

    std::size_t Read(char* memory, std::size_t size) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_texts.empty() || m_isAtEnd; });
        if (m_texts.empty()) {
            if (m_failure) {
                std::rethrow_exception(m_failure);
            }
            return 0;
        }
        const std::string_view text = m_texts.front();
        const std::size_t count = std::min(size, text.size() - m_taken);
        std::memcpy(memory, text.data() + m_taken, count);
        m_taken += count;
        if (m_taken == text.size()) {
            m_texts.pop_front();
            m_taken = 0;
            m_changed.notify_all();
        }
        return count;
    }

private:
    static constexpr std::size_t ROOM = std::size_t{128} << 10U;
    static constexpr std::size_t MOST_TEXTS = 4;

    void Run() noexcept {
        try {
            DecodeAll();
        } catch (...) {
            m_failure = std::current_exception();
        }
        const std::lock_guard lock(m_mutex);
        m_isAtEnd = true;
        m_changed.notify_all();
    }

    void DecodeAll() {
        std::string_view raw = m_raw;
        do {
            std::string room(ROOM, '\0');
            while (const std::size_t size = m_decoder->Decode(raw, room.data(), room.size())) {
                if (!Give(room.substr(0, size))) {
                    return;
                }
            }
        } while (ReadRaw(raw));
        if (!m_isStopped && !m_decoder->IsComplete()) {
            throw Failure(Cause::INPUT, m_name + ": the compressed data is cut off: its end is missing");
        }
    }

    // False at the end, and if no more text is wanted.
    bool ReadRaw(std::string_view& raw) {
        std::array<pollfd, 2> waited{{{m_descriptor, POLLIN, 0}, {m_wakeUp.Get(), POLLIN, 0}}};
        while (poll(waited.data(), waited.size(), -1) == -1 && errno == EINTR) {}
        if (waited[1].revents != 0) {
            return false;
        }
        m_raw.resize(ROOM);
        const ssize_t count = ReadSome(m_descriptor, m_raw.data(), m_raw.size());
        if (count == -1) {
            FailByErrno(Cause::INPUT, m_name);
        }
        m_bytesRead += static_cast<std::uint64_t>(count);
        raw = std::string_view(m_raw).substr(0, static_cast<std::size_t>(count));
        return count != 0;
    }

    // False if no more text is wanted.
    bool Give(std::string text) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_texts.size() < MOST_TEXTS || m_isStopped; });
        if (m_isStopped) {
            return false;
        }
        m_texts.push_back(std::move(text));
        m_changed.notify_all();
        return true;
    }

    int m_descriptor;
    std::string m_name;
    std::string m_raw;
    std::unique_ptr<Decoder> m_decoder;
    std::atomic<std::uint64_t>& m_bytesRead;
    Descriptor m_wakeUp;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::string> m_texts;
    std::size_t m_taken = 0;  // of the first text
    std::exception_ptr m_failure;
    bool m_isAtEnd = false;
    std::atomic<bool> m_isStopped = false;
    std::thread m_thread;
};

Input::Input(int descriptor, std::string name, std::atomic<std::uint64_t>& bytesRead)
    : m_descriptor(descriptor), m_name(std::move(name)), m_bytesRead(bytesRead) {
    Recognized recognized{Compression::NONE, false};
    for (std::size_t size = 1; !recognized.isSure && size != 0;) {
        const std::size_t before = m_head.size();
        m_head.resize(before + FIRST_READ);
        size = ReadRaw(m_head.data() + before, FIRST_READ);
        m_head.resize(before + size);
        recognized = RecognizeCompression(m_head);
    }
    if (auto decoder = MakeDecoder(recognized.compression, m_name)) {
        m_decompression = std::make_unique<Decompression>(m_descriptor.Get(), m_name, std::exchange(m_head, {}),
                                                          std::move(decoder), m_bytesRead);
    }
}

Input::~Input() = default;

std::size_t Input::Read(char* memory, std::size_t size) {
    if (m_decompression) {
        return m_decompression->Read(memory, size);
    }
    if (m_givenOfHead != m_head.size()) {
        const std::size_t count = std::min(size, m_head.size() - m_givenOfHead);
        std::memcpy(memory, m_head.data() + m_givenOfHead, count);
        m_givenOfHead += count;
        return count;
    }
    return ReadRaw(memory, size);
}

std::size_t Input::ReadRaw(char* memory, std::size_t size) {
    const ssize_t count = ReadSome(m_descriptor.Get(), memory, size);
    if (count == -1) {
        FailByErrno(Cause::INPUT, m_name);
    }
    m_bytesRead += static_cast<std::uint64_t>(count);
    return static_cast<std::size_t>(count);
}

}  // namespace NS_KX
