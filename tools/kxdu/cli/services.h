#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <kx_domain_util/processexception.h>
#include <kx_standalone/host.h>
#include <kx_standalone/inventoryfile.h>

#include "lines/fileinuse.h"

namespace NS_KX::NS_KXDU {

class MissingNes;
class Verb;

/// The files from which the services of the library are loaded, as the user named them.
struct ServiceOptions {
    std::string inventory;  ///< SQLite file; empty: none
    std::string config;     ///< folder; empty: none
};

/// Adds `--inventory` to `verb`, with its environment variable.
void AddInventoryOption(Verb& verb, std::string& inventory);
/// Adds `--config` to `verb`, with its environment variable.
void AddConfigOption(Verb& verb, std::string& config);
/// Adds both.
void AddServiceOptions(Verb& verb, ServiceOptions& options);

/// The files of these services, which an output must not replace.
std::vector<FileInUse> FilesInUse(const ServiceOptions& options);

/// Starts the services; they run as long as the returned host lives. Notes in `missing`, unless it is null, the NEs
/// that the inventory is asked about and lacks. Says on standard error what looks wrong with the configuration. Throws
/// `Failure` with `Cause::INPUT` if a file cannot be loaded; the message says if the environment named it, and how to
/// make a missing inventory.
std::unique_ptr<NS_STANDALONE::Host> StartServices(const ServiceOptions& options, MissingNes* missing = nullptr);

/// Reads the inventory named by an option or the environment. Throws as above.
NS_STANDALONE::Inventory ReadInventory(const std::string& file);

/// Throws `Failure` with `Cause::INPUT`. The message says what is wrong with the inventory, where its name comes
/// from, and how to make a missing one.
[[noreturn]] void ComplainOfInventory(const std::string& file, const std::string& complaint,
                                      const std::string& source = {});

/// Calls `use`, which opens the inventory `file`, named by an argument. Throws as above.
template <class Use>
auto OpeningInventory(const std::string& file, Use use) {
    try {
        return use();
    } catch (const std::runtime_error& error) {
        ComplainOfInventory(file, error.what());
    }
}

/// Throws `Failure` with `Cause::INPUT`; the message says how to give an inventory.
[[noreturn]] void ComplainOfNoInventory();
/// The same for a configuration.
[[noreturn]] void ComplainOfNoConfiguration();

/// Calls `read`, which reads an identifier. If a service is missing, fails with the message that asks for a
/// configuration.
template <class Read>
void Reading(Read read) {
    try {
        read();
    } catch (const NS_UTIL::InterfaceNotExistException&) {
        ComplainOfNoConfiguration();
    }
}

/// Calls `write`, which writes an identifier. If a service is missing, fails with the message that asks for an
/// inventory.
template <class Write>
void Writing(Write write) {
    try {
        write();
    } catch (const NS_UTIL::InterfaceNotExistException&) {
        ComplainOfNoInventory();
    }
}

}  // namespace NS_KX::NS_KXDU
