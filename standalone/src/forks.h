#pragma once

#include <mutex>

/// Lets a process fork while other threads use the services of its host. A fork takes these locks, and waits for the
/// threads that work on inventory files: so the child finds all locks free and all data whole. A process has one of
/// each, as it has one host.
namespace NS_STANDALONE {

/// Held while configuration files are read.
std::mutex& ConfigurationMutex() noexcept;
/// Held while a logger is looked up.
std::mutex& LoggersMutex() noexcept;
/// Held while log records are written, or their target changes.
std::mutex& RecordsMutex() noexcept;

/// A buffer of log records, flushed before a fork: else the child would write its records once more.
class RecordsFlush {
public:
    virtual void Flush() = 0;  ///< called with `RecordsMutex` held

protected:
    ~RecordsFlush() = default;
};

/// Flushes `records` before each fork; null flushes nothing.
void FlushBeforeFork(RecordsFlush* records) noexcept;

/// A local variable of each function that works on an inventory file. SQLite keeps locks and the state of open files in
/// the process; neither survives a fork in the middle of the work. So a fork waits until no thread works on such a
/// file.
class InventoryFileUse {
public:
    InventoryFileUse() noexcept;
    ~InventoryFileUse();
    InventoryFileUse(const InventoryFileUse&) = delete;
    InventoryFileUse& operator=(const InventoryFileUse&) = delete;
};

}  // namespace NS_STANDALONE
