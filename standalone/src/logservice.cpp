#include "logservice.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include <spdlog/logger.h>
#include <spdlog/sinks/sink.h>
#include <spdlog/sinks/stdout_sinks.h>

#include "forks.h"
#include "logfile.h"
#include "text/steering.h"

namespace NS_STANDALONE {

namespace {

constexpr const char* RECORD_PATTERN = "%Y-%m-%d %H:%M:%S.%e %l [%t] %n %v";

// Indexed by the level numbers of records.
constexpr std::array RECORD_LEVELS{spdlog::level::err, spdlog::level::warn, spdlog::level::info, spdlog::level::debug};

constexpr std::array<std::pair<std::string_view, spdlog::level::level_enum>, 5> THRESHOLDS{{
    {"error", spdlog::level::err},
    {"warning", spdlog::level::warn},
    {"info", spdlog::level::info},
    {"debug", spdlog::level::debug},
    {"trace", spdlog::level::trace},
}};

spdlog::level::level_enum RecordLevel(int level) {
    const auto position = static_cast<std::size_t>(std::max(level, 0));
    return position < RECORD_LEVELS.size() ? RECORD_LEVELS[position] : spdlog::level::trace;
}

spdlog::level::level_enum Threshold(std::string_view name) {
    const auto* const found = std::ranges::find(THRESHOLDS, name, [](const auto& row) { return row.first; });
    return found != THRESHOLDS.end() ? found->second : spdlog::level::debug;
}

// Returns the message that printf makes of format and arguments; a format that printf refuses stands for itself.
// Returns nothing if memory runs out.
std::optional<std::string> FormatMessage(const char* format, std::va_list arguments) {
    std::array<char, 512> buffer{};
    std::va_list again;
    va_copy(again, arguments);
    const int needed = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    std::optional<std::string> message;
    try {
        if (needed < 0) {
            message.emplace(format);
        } else if (static_cast<std::size_t>(needed) < buffer.size()) {
            message.emplace(buffer.data(), static_cast<std::size_t>(needed));
        } else {
            std::string text(static_cast<std::size_t>(needed), '\0');
            static_cast<void>(std::vsnprintf(text.data(), text.size() + 1, format, again));  // succeeded above
            message = std::move(text);
        }
    } catch (const std::bad_alloc&) {
        message.reset();
    }
    va_end(again);
    return message;
}

// The record in one line: what would end it or steer a terminal stands as in C.
std::string InOneLine(std::string_view record) {
    std::string line;
    line.reserve(record.size());
    while (true) {
        const std::size_t harmless = NS_KX::HarmlessSize(record);
        line.append(record.substr(0, harmless));
        record.remove_prefix(harmless);
        if (record.empty()) {
            return line;
        }
        const std::string_view first = record.substr(0, NS_KX::SizeOfFirst(record));
        if (const auto at = std::string_view("\n\r\t").find(first); at != std::string_view::npos) {
            line.append(1, '\\').append(1, "nrt"[at]);
        } else {
            NS_KX::AppendInHex(line, first);
        }
        record.remove_prefix(first.size());
    }
}

class Logger final : public NS_SERVICE::ModuleLogger {
public:
    Logger(const std::string& name, spdlog::sink_ptr sink, spdlog::level::level_enum threshold)
        : m_logger(name, std::move(sink)) {
        m_logger.set_level(threshold);
        m_logger.flush_on(spdlog::level::warn);
    }

    // NOLINTNEXTLINE(cert-dcl50-cpp): the interface has printf's form
    void WriteLog(const std::string& file, const std::string& function, int line, int level, const char* format,
                  ...) override {
        const spdlog::level::level_enum recordLevel = RecordLevel(level);
        if (!m_logger.should_log(recordLevel)) {
            return;
        }
        std::va_list arguments;
        va_start(arguments, format);
        const std::optional<std::string> message = FormatMessage(format, arguments);
        va_end(arguments);
        try {
            if (message) {
                const std::string record =
                    InOneLine(file + ":" + std::to_string(line) + " " + function + ": " + *message);
                m_logger.log(recordLevel, spdlog::string_view_t(record.data(), record.size()));
            }
        } catch (const std::bad_alloc&) {
            return;  // only the record is lost: the logged operation goes on
        }
    }

private:
    spdlog::logger m_logger;
};

spdlog::sink_ptr MakeSink(const LogTarget& target) {
    if (target.kind == LogTarget::Kind::STDERR) {
        return std::make_shared<spdlog::sinks::stderr_sink_st>();
    }
    try {
        return std::make_shared<LogFile>(target.file, target.maxFileBytes, target.maxFiles);
    } catch (const spdlog::spdlog_ex& error) {
        throw std::runtime_error(target.file.string() + ": cannot be the log file: " + error.what());
    }
}

}  // namespace

// Writes records under a mutex that a fork can hold, unlike the mutexes of spdlog's own sinks.
class LogService::Sink final : public spdlog::sinks::sink, public RecordsFlush {
public:
    explicit Sink(spdlog::sink_ptr target) : m_target(std::move(target)) {
        m_target->set_pattern(RECORD_PATTERN);
        FlushBeforeFork(this);
    }
    ~Sink() override { FlushBeforeFork(nullptr); }
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;

    void log(const spdlog::details::log_msg& message) override {
        const std::lock_guard lock(RecordsMutex());
        m_target->log(message);
    }
    void flush() override {
        const std::lock_guard lock(RecordsMutex());
        m_target->flush();
    }
    void set_pattern(const std::string& pattern) override {
        const std::lock_guard lock(RecordsMutex());
        m_target->set_pattern(pattern);
    }
    void set_formatter(std::unique_ptr<spdlog::formatter> formatter) override {
        const std::lock_guard lock(RecordsMutex());
        m_target->set_formatter(std::move(formatter));
    }
    void Flush() override {
        try {
            m_target->flush();
        } catch (const spdlog::spdlog_ex&) {
            // A full disk, say: the fork goes on, and the next record hits the same error.
        }
    }

private:
    spdlog::sink_ptr m_target;
};

LogService::LogService(const LogTarget& target) : m_sink(std::make_shared<Sink>(MakeSink(target))) {}

LogService::~LogService() = default;

NS_SERVICE::ModuleLogger* LogService::GetModuleLogger(const std::string& module, const std::string& subModule,
                                                      const std::string& level) {
    const std::lock_guard lock(LoggersMutex());
    std::unique_ptr<NS_SERVICE::ModuleLogger>& logger = m_loggers[{module, subModule, level}];
    if (logger == nullptr) {
        logger = std::make_unique<Logger>(module + "/" + subModule, m_sink, Threshold(level));
    }
    return logger.get();
}

}  // namespace NS_STANDALONE
