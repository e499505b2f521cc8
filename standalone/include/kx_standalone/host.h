#pragma once

#include <filesystem>
#include <memory>

#include <kx_standalone/export.h>

/// Real services for a process that has no management system around it.
namespace NS_STANDALONE {

/// Where log records go.
struct LogTarget {
    enum class Kind { NONE, STDERR, FILE };

    Kind kind = Kind::NONE;          ///< NONE registers no log service: records are dropped unbuilt
    std::filesystem::path file;      ///< of kind FILE: the newest file; older ones get a number
    std::size_t maxFileBytes = 10U << 20U;  ///< a file that grows beyond it is rotated
    std::size_t maxFiles = 5;        ///< how many older files are kept
};

/// What a host is made of. Each part may be left out; its service is then not registered.
struct HostOptions {
    std::filesystem::path configFolder;   ///< holds "kx_corbaagent_bundle/bundle.cfg" (TOML); empty: no configuration
    std::filesystem::path inventoryFile;  ///< SQLite file (see `inventoryfile.h`); empty: no inventory
    LogTarget log;
};

/// Registers the inventory, data-access and log services of a process, sets its configuration items, and loads the
/// domain lists into `DeviceDomainMgr`; takes all of it back when it is destroyed. One host at a time.
///
/// Threads: make and destroy it while no other thread uses the library. The services answer any number of threads.
class KX_STANDALONE_API Host {
public:
    /// Throws std::runtime_error when a part cannot be loaded; its text names the file and the place in it. Nothing
    /// stays registered or set then.
    explicit Host(const HostOptions& options);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Reads the inventory file again and puts it in the place of what was read before, for all threads at once; queries
    /// in flight finish on the old one. Throws as the constructor does, and then keeps what was there. The domain lists
    /// are loaded anew too, so no other thread may use the predicates of `netype.h` meanwhile.
    void ReloadInventory();
    /// Reads the configuration file again. Throws as the constructor does, and then leaves the items as they were.
    void ReloadConfiguration();

private:
    class Parts;
    std::unique_ptr<Parts> m_parts;
};

}  // namespace NS_STANDALONE
