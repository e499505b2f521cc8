#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <kx_standalone/export.h>

/// Real services for a process that has no management system around it.
namespace NS_STANDALONE {

/// Where log records go. A record is one line: time, level, thread, module/sub-module, source file:line, function,
/// message. Record levels: 0 error, 1 warning, 2 info, 3 debug, above that trace; below 0 counts as 0. A caller asks
/// for a logger by its level ("error", "warning", "info", "debug", "trace"; any other name counts as "debug"). The
/// logger writes records of that level and more severe ones. Warnings and errors are in the file at once, others later.
/// Line feeds, carriage returns and tabs in a record stand as "\n", "\r" and "\t"; other control characters, overrides
/// of direction and bytes that are not UTF-8 as "\x1b". If the file cannot be rotated, it grows: that is said once on
/// standard error, and tried again when it has grown by `maxFileBytes`.
struct LogTarget {
    enum class Kind { NONE, STDERR, FILE };

    Kind kind = Kind::NONE;                 ///< NONE registers no log service: records are dropped unformatted
    std::filesystem::path file;             ///< of kind FILE: the newest file; older ones get a number
    std::size_t maxFileBytes = 10U << 20U;  ///< a file that grows beyond it is rotated; 1 or more for kind FILE
    std::size_t maxFiles = 5;               ///< how many older files are kept; 0 to 200000 for kind FILE
};

/// The parts of a host. Each part may be left out; its service is then not registered.
///
/// Configuration: each top-level item of the bundle file becomes an item of `CorbaConfigItems`: a text as it is, a
/// whole number in decimal, a boolean as 0 or 1; any other type is an error. Each table is a section, which only the
/// data-access service shows. That service answers the whole numbers of 32 bits and the booleans of any TOML file in
/// the folder, at the top level (empty section) or in a section. A section that the file lacks has no items. It
/// returns null for a path that is absolute or has "..", for a missing file, and for a file that does not parse or is
/// nested more than 100 levels deep.
///
/// Inventory: `IsTransMultiSubShelf` answers from the NE alone. Questions about anything that the inventory lacks are
/// answered false. The lists in `DeviceDomainMgr` belong to a host with an inventory. Each domain that a predicate of
/// `netype.h` asks for gets a list, which is empty if the inventory has none: so any number of threads may call the
/// predicates. The host deletes all lists with itself (`DeviceDomainMgr::Destroy`). A host without an inventory leaves
/// them alone.
struct HostOptions {
    std::filesystem::path configFolder;   ///< holds "kx_corbaagent_bundle/bundle.cfg" (TOML); empty: no configuration
    std::filesystem::path inventoryFile;  ///< SQLite file (see `inventoryfile.h`); empty: no inventory
    LogTarget log;
    /// Called for each question about an NE that the inventory lacks, with the NE's number, on the thread that asks.
    /// If empty, it is not called. It may call the services and may wait for a thread in `Host::ReloadInventory`. It
    /// must not throw or destroy the host. Nor may it wait for a thread that destroys the host, or that unregisters or
    /// replaces the inventory service: that thread waits until the question is answered.
    std::function<void(std::int64_t neId)> missingNe;
};

/// Registers the inventory, data-access and log services of a process, sets its configuration items, and loads the
/// domain lists into `DeviceDomainMgr`. The destructor takes all of it back. One host at a time. A host replaces
/// services and items that were registered or set before under the same names; they do not come back.
///
/// Threads: make and destroy it while no other thread uses the library. The services answer any number of threads.
///
/// Forks: a child has the host too, and may use, reload and destroy it (`readpin.h` says more). A fork waits until no
/// thread works on an inventory file: some milliseconds, and up to five seconds if another program has it locked. Both
/// processes write their log records to the same file, so only one of them should go on to log to a file that rotates.
class KX_STANDALONE_API Host {
public:
    /// Throws std::runtime_error if a part cannot be loaded or an option is out of range. The text names the file and,
    /// if there is one, the place in it. Nothing stays registered or set then.
    explicit Host(const HostOptions& options);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Reads the inventory file again and replaces the inventory for all threads at once. Queries in flight finish on
    /// the old one. Throws as the constructor does, and then keeps the old inventory. The exception: if memory runs out
    /// (std::bad_alloc) while the domain lists are stored, some lists may be new and others old until the next call;
    /// the NEs and NE types stay old. The domain lists are loaded anew too, so no other thread may use the predicates
    /// of `netype.h` meanwhile. A domain that is no longer in the file gets an empty list. Does nothing without an
    /// inventory. One thread at a time.
    void ReloadInventory();
    /// Reads the configuration file again, and the files that the data-access service was asked for. Throws as the
    /// constructor does, also if one of those files no longer parses, and then leaves everything as it was. The
    /// exception: if memory runs out (std::bad_alloc) while items are set, some may be new and others old. Items that
    /// the file no longer has are removed; items that the host did not set stay. Objects that the data-access service
    /// gave out answer from the new files. Does nothing without a configuration folder. Any thread.
    void ReloadConfiguration();

    /// The names of the configuration items that the file sets, in alphabetical order; none without a configuration
    /// folder. Any thread.
    [[nodiscard]] std::vector<std::string> ConfigurationItems() const;

private:
    class Parts;
    std::unique_ptr<Parts> m_parts;
};

}  // namespace NS_STANDALONE
