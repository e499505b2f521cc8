#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <kx_platform/bundlemgr.h>
#include <kx_standalone/host.h>
#include <kx_standalone/inventoryfile.h>

#include "configurationservice.h"
#include "domainlists.h"
#include "inventoryservice.h"
#include "logservice.h"

namespace NS_STANDALONE {

namespace {

using NS_BUNDLEMGR1::BundleMgr;

// Registers a service as long as it lives.
class Registration {
public:
    Registration(std::string name, NS_BUNDLEMGR1::ServiceInterface* service) : m_name(std::move(name)) {
        BundleMgr::Instance()->RegisterService(m_name, service);
    }
    ~Registration() { BundleMgr::Instance()->UnregisterService(m_name); }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

private:
    std::string m_name;
};

}  // namespace

// The registrations are last, so that services are unregistered before anything is freed.
class Host::Parts {
public:
    explicit Parts(const HostOptions& options) : m_inventoryFile(options.inventoryFile) {
        if (options.log.kind != LogTarget::Kind::NONE) {
            m_log.emplace(options.log);
        }
        if (!m_inventoryFile.empty()) {
            const Inventory inventory = ReadInventory(m_inventoryFile);
            m_inventory.emplace(inventory, options.missingNe);
            m_domainLists.emplace(inventory.domainMembers);
        }
        if (!options.configFolder.empty()) {
            m_configuration.emplace(options.configFolder);
        }
        Register();
    }

    void ReloadInventory() {
        if (m_inventory) {
            const Inventory inventory = ReadInventory(m_inventoryFile);
            auto table = std::make_unique<const InventoryService::Table>(inventory);
            m_domainLists->Load(inventory.domainMembers);
            m_inventory->Replace(std::move(table));  // last, since it cannot fail
        }
    }

    void ReloadConfiguration() {
        if (m_configuration) {
            m_configuration->Reload();
        }
    }

    [[nodiscard]] std::vector<std::string> ConfigurationItems() const {
        return m_configuration ? m_configuration->ItemNames() : std::vector<std::string>();
    }

private:
    void Register() {
        if (m_log) {
            m_logRegistration.emplace("LogSvcInterface", &*m_log);
        }
        if (m_configuration) {
            m_configurationRegistration.emplace("DAWSvcInterface", &*m_configuration);
        }
        if (m_inventory) {
            m_inventoryRegistration.emplace("InventoryBufif", &*m_inventory);
        }
    }

    std::filesystem::path m_inventoryFile;
    std::optional<LogService> m_log;
    std::optional<InventoryService> m_inventory;
    std::optional<DomainLists> m_domainLists;
    std::optional<ConfigurationService> m_configuration;

    std::optional<Registration> m_logRegistration;
    std::optional<Registration> m_configurationRegistration;
    std::optional<Registration> m_inventoryRegistration;
};

Host::Host(const HostOptions& options) : m_parts(std::make_unique<Parts>(options)) {}

Host::~Host() = default;

void Host::ReloadInventory() {
    m_parts->ReloadInventory();
}

void Host::ReloadConfiguration() {
    m_parts->ReloadConfiguration();
}

std::vector<std::string> Host::ConfigurationItems() const {
    return m_parts->ConfigurationItems();
}

}  // namespace NS_STANDALONE
