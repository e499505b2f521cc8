/// Configuration and services for comparing the conversions with their literal counterparts.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <ostream>
#include <string>

#include <kx_domain_util/processexception.h>

#include "support/literalresidutil.h"
#include "support/services.h"

namespace NS_TEST {

struct ConversionProfile {
    const char* name;
    std::map<std::string, std::string> configuration;
    bool hasServices;
};

inline void PrintTo(const ConversionProfile& profile, std::ostream* out) {
    *out << profile.name;
}

/// All configurations and services that make a difference to conversions.
inline const std::array<ConversionProfile, 5> CONVERSION_PROFILES{
    {{"NoItems", {}, true},
     {"CarrierProfile", {{"Telvandaire", "1"}}, true},
     {"SubSlotList", {{"Telvandaire", "0"}, {"NETypeListForSubSlot", "7,1912,1911"}}, true},
     {"OtherSubSlotList", {{"Telvandaire", "2"}, {"NETypeListForSubSlot", ",, 1911,x"}}, true},
     {"NoServices", {{"NETypeListForSubSlot", "1912"}}, false}}};

/// Sets the configuration and services of a profile, for the library and its literal counterpart, while it lives.
class ConversionSurroundings {
public:
    explicit ConversionSurroundings(const ConversionProfile& profile) : m_configuration(profile.configuration) {
        if (profile.hasServices) {
            m_inventoryRegistration.emplace("InventoryBufif", m_inventory);
            m_dataAccessRegistration.emplace("DAWSvcInterface", m_dataAccess);
            LiteralResIDUtil::inventory = &m_inventory;
            LiteralResIDUtil::dataAccess = &m_dataAccess;
        }
    }
    ~ConversionSurroundings() {
        LiteralResIDUtil::inventory = nullptr;
        LiteralResIDUtil::dataAccess = nullptr;
    }
    ConversionSurroundings(const ConversionSurroundings&) = delete;
    ConversionSurroundings& operator=(const ConversionSurroundings&) = delete;

private:
    // Has no file, and records no questions: there are too many.
    class EmptyDataAccess : public NS_SERVICE::DAWSvcInterface {
    public:
        NS_SERVICE::ConfigObject* GetConfiguration(const std::string& /*path*/,
                                                   const std::string& /*section*/) override {
            return nullptr;
        }
    };

    Configuration m_configuration;
    CountingInventory m_inventory{1912};
    EmptyDataAccess m_dataAccess;
    std::optional<Registration> m_inventoryRegistration;
    std::optional<Registration> m_dataAccessRegistration;
};

/// Whether `convert` was stopped by a missing service.
template <class Convert>
bool LacksService(Convert convert) {
    try {
        convert();
        return false;
    } catch (const NS_UTIL::InterfaceNotExistException&) {
        return true;
    } catch (const LiteralResIDUtil::NoService&) {
        return true;
    }
}

}  // namespace NS_TEST
