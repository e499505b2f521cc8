#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>

#include <kx_standalone/export.h>

/// Real services for a process that has no management system around it.
namespace NS_STANDALONE {

/// Where log records go. A record is one line: time, level, thread, module/sub-module, source file:line, function,
/// message. Record levels: 0 error, 1 warning, 2 info, 3 debug, above that trace; below 0 counts as 0. A logger writes
/// the records from the level on by which it was asked for ("error", "warning", "info", "debug", "trace"; any other
/// name counts as "debug"). Warnings and errors are in the file at once, others by and by.
struct LogTarget {
    enum class Kind { NONE, STDERR, FILE };

    Kind kind = Kind::NONE;                 ///< NONE registers no log service: records are dropped unbuilt
    std::filesystem::path file;             ///< of kind FILE: the newest file; older ones get a number
    std::size_t maxFileBytes = 10U << 20U;  ///< a file that grows beyond it is rotated; 1 or more for kind FILE
    std::size_t maxFiles = 5;               ///< how many older files are kept; 0 to 200000 for kind FILE
};

/// What a host is made of. Each part may be left out; its service is then not registered.
///
/// Configuration: each top-level item of the bundle file becomes an item of `CorbaConfigItems`: a text as it is, a
/// whole number in decimal, a boolean as 0 or 1; any other type is an error. Each table is a section, which only the
/// data-access service shows. That service answers the whole numbers of 32 bits and the booleans of any TOML file in
/// the folder, top level (section empty) or section; a section that the file does not have has no items. It answers
/// null for a path that is absolute or has "..", for a file that is not there, and for one that does not parse or is
/// nested more than 100 levels deep.
///
/// Inventory: `IsTransMultiSubShelf` answers from the NE alone, and whatever is not in the inventory is answered false.
/// The lists in `DeviceDomainMgr` belong to a host with an inventory: each domain that a predicate of `netype.h` asks
/// for gets a list, an empty one where the inventory has none, so that any number of threads may ask the predicates;
/// all lists go with the host (`DeviceDomainMgr::Destroy`). A host without an inventory leaves them alone.
struct HostOptions {
    std::filesystem::path configFolder;   ///< holds "kx_corbaagent_bundle/bundle.cfg" (TOML); empty: no configuration
    std::filesystem::path inventoryFile;  ///< SQLite file (see `inventoryfile.h`); empty: no inventory
    LogTarget log;
    /// Told of each question about an NE that the inventory does not have, with its number, on the thread that asks;
    /// empty: nobody is. It may ask the services, and may wait for a thread in `Host::ReloadInventory`. It may not
    /// throw, nor destroy the host; nor wait for a thread that does, or that takes back or replaces the inventory
    /// service: that thread waits until the question is answered.
    std::function<void(std::int64_t neId)> missingNe;
};

/// Registers the inventory, data-access and log services of a process, sets its configuration items, and loads the
/// domain lists into `DeviceDomainMgr`; takes all of it back when it is destroyed. One host at a time. What somebody
/// else registered or set before under the same name is replaced, and does not come back.
///
/// Threads: make and destroy it while no other thread uses the library. The services answer any number of threads.
///
/// Forks: a child has the host too, and may use, reload and destroy it (`readpin.h` says more). A fork waits until no
/// thread works on an inventory file: some milliseconds, and up to five seconds if another program has it locked. Both
/// processes write their log records to the same file, so only one of them should go on to log to a file that rotates.
class KX_STANDALONE_API Host {
public:
    /// Throws std::runtime_error when a part cannot be loaded, or an option is out of range; its text names the file
    /// and, where it applies, the place in it. Nothing stays registered or set then.
    explicit Host(const HostOptions& options);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Reads the inventory file again and puts it in the place of what was read before, for all threads at once;
    /// queries in flight finish on the old one. Throws as the constructor does, and then keeps what was there; only
    /// when memory runs out (std::bad_alloc) while the domain lists are stored, some of them may be new and the others
    /// old, beside the old NEs and NE types, until the next call. The domain lists are loaded anew too, so no other
    /// thread may use the predicates of `netype.h` meanwhile; a domain that is in the file no more gets an empty list.
    /// Does nothing without an inventory. One thread at a time.
    void ReloadInventory();
    /// Reads the configuration file again, and the files that the data-access service was asked for. Throws as the
    /// constructor does, also for one of these that does not parse any more, and then leaves all as it was; only when
    /// memory runs out (std::bad_alloc) while items are set, some of them may be new and the others old. Items that the
    /// file no longer has are removed; items that the host did not set stay. Objects that the data-access service gave
    /// out answer from the new files. Does nothing without a configuration folder. Any thread.
    void ReloadConfiguration();

private:
    class Parts;
    std::unique_ptr<Parts> m_parts;
};

}  // namespace NS_STANDALONE
