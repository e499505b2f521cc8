#pragma once

#include <mutex>

/// What the services of a host do so that a process may fork while other threads use them: a fork takes these locks and
/// waits for those who work on inventory files, so that the child finds all of it whole and free. There is one of each
/// in the process, as there is one host.
namespace NS_STANDALONE {

/// Of those who read configuration files.
std::mutex& ConfigurationMutex() noexcept;
/// Of those who look a logger up.
std::mutex& LoggersMutex() noexcept;
/// Of those who write log records, or change where they go.
std::mutex& RecordsMutex() noexcept;

/// Where records go that are not yet with the system: a child would write them once more.
class RecordsFlush {
public:
    virtual void Flush() = 0;  ///< called with `RecordsMutex` held

protected:
    ~RecordsFlush() = default;
};

/// Flushes `records` before each fork; null: nothing.
void FlushBeforeFork(RecordsFlush* records) noexcept;

/// A local variable of who works on an inventory file. SQLite keeps locks and what it knows of open files in the
/// process, none of which outlives a fork in its midst: the fork waits until no thread works on such a file.
class InventoryFileUse {
public:
    InventoryFileUse() noexcept;
    ~InventoryFileUse();
    InventoryFileUse(const InventoryFileUse&) = delete;
    InventoryFileUse& operator=(const InventoryFileUse&) = delete;
};

}  // namespace NS_STANDALONE
