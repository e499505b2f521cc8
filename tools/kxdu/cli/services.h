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

/// What the user said about the services that the library stands on.
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

/// The services, for as long as it lives. Notes in `missing`, unless it is null, which NEs the inventory is asked about
/// in vain. Throws `Failure` with `Cause::USAGE` when one cannot be loaded; it also tells when the environment named
/// the file, and how to get an inventory where there is none.
std::unique_ptr<NS_STANDALONE::Host> StartServices(const ServiceOptions& options, MissingNes* missing = nullptr);

/// What an inventory holds that an option or the environment names. Throws as above.
NS_STANDALONE::Inventory ReadInventory(const std::string& file);

/// Throws `Failure` with `Cause::USAGE`: what is wrong with an inventory, where its name comes from, and how to get
/// one where there is none.
[[noreturn]] void ComplainOfInventory(const std::string& file, const std::string& complaint,
                                      const std::string& source = {});

/// Calls `use`, which opens an inventory that an argument names. Throws as above.
template <class Use>
auto OpeningInventory(const std::string& file, Use use) {
    try {
        return use();
    } catch (const std::runtime_error& error) {
        ComplainOfInventory(file, error.what());
    }
}

/// Throws `Failure` with `Cause::USAGE`, which tells how to give an inventory.
[[noreturn]] void ComplainOfNoInventory();
/// The same for a configuration.
[[noreturn]] void ComplainOfNoConfiguration();

/// Calls `read`, which reads an identifier, and turns a missing service into the failure that asks for a configuration.
template <class Read>
void Reading(Read read) {
    try {
        read();
    } catch (const NS_UTIL::InterfaceNotExistException&) {
        ComplainOfNoConfiguration();
    }
}

/// Calls `write`, which writes an identifier, and turns a missing service into the failure that asks for an inventory.
template <class Write>
void Writing(Write write) {
    try {
        write();
    } catch (const NS_UTIL::InterfaceNotExistException&) {
        ComplainOfNoInventory();
    }
}

}  // namespace NS_KX::NS_KXDU
