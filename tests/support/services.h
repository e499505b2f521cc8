/// Services for tests. They answer from what the test gave them, and record the questions.
#pragma once

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <kx_platform/bundlemgr.h>
#include <kx_platform/configitems.h>
#include <kx_platform/dawsvcinterface.h>
#include <kx_platform/inventorybufif.h>
#include <kx_platform/logsvcinterface.h>

namespace NS_TEST {

/// Registers a service for as long as it lives.
class Registration {
public:
    Registration(std::string name, NS_BUNDLEMGR1::ServiceInterface& service) : m_name(std::move(name)) {
        NS_BUNDLEMGR1::BundleMgr::Instance()->RegisterService(m_name, &service);
    }
    ~Registration() { NS_BUNDLEMGR1::BundleMgr::Instance()->UnregisterService(m_name); }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

private:
    std::string m_name;
};

/// Returns the service registered under `name`, or null.
template <class Service>
Service* FindService(const std::string& name) {
    const std::lock_guard lock(NS_BUNDLEMGR1::_g_actualmutex);
    for (const auto& object : NS_BUNDLEMGR1::BundleMgr::Instance()->GetServiceObjects()) {
        if (object.GetObjectName() == name) {
            return dynamic_cast<Service*>(object.GetInterface());
        }
    }
    return nullptr;
}

/// Sets configuration items for as long as it lives. Removes all items first, and again at the end.
class Configuration {
public:
    Configuration() { Items().Clear(); }
    Configuration(std::initializer_list<std::pair<const std::string, std::string>> items)
        : Configuration(std::map<std::string, std::string>(items)) {}
    explicit Configuration(const std::map<std::string, std::string>& items) : Configuration() {
        for (const auto& [key, value] : items) {
            Items().SetItem(key, value);
        }
    }
    ~Configuration() { Items().Clear(); }
    Configuration(const Configuration&) = delete;
    Configuration& operator=(const Configuration&) = delete;

    static void Set(const std::string& key, const std::string& value) { Items().SetItem(key, value); }
    static void Remove(const std::string& key) { Items().RemoveItem(key); }

private:
    static NS_BUNDLEMGR1::CorbaConfigItems& Items() { return *NS_BUNDLEMGR1::CorbaConfigItems::Instance(); }
};

/// Answers from a map; one thread.
class RecordingInventory : public NS_SERVICE::InventoryBufif {
public:
    using Types = std::map<std::int64_t, std::uint32_t>;
    struct Query {
        std::int64_t neId;
        std::uint32_t neType;  // its value when the query came in
        bool flag;

        bool operator==(const Query&) const = default;
    };

    RecordingInventory() = default;
    explicit RecordingInventory(Types types) : m_types(std::move(types)) {}

    bool QueryNEType(std::int64_t neId, std::uint32_t& neType, bool flag) override {
        m_queries.push_back({neId, neType, flag});
        const auto known = m_types.find(neId);
        if (known == m_types.end()) {
            return false;
        }
        neType = known->second;
        return true;
    }
    bool IsOamNumberOmitted(int neId) override {
        m_oamQuestions.push_back(neId);
        return m_omitting.contains(neId);
    }
    bool IsIPServiceNEType(unsigned short neType) override { return Answer("IsIPServiceNEType", neType); }
    bool IsKLVNEType(unsigned short neType) override { return Answer("IsKLVNEType", neType); }
    bool IsTransMultiSubShelf(unsigned long neId, unsigned short neType) override {
        m_neIds.push_back(neId);
        return Answer("IsTransMultiSubShelf", neType);
    }

    Types m_types;
    std::set<int> m_omitting;  // the NEs whose identifiers leave OAM numbers out
    unsigned m_yes = 0;        // the NE type for which every question is answered with yes
    std::vector<Query> m_queries;
    std::vector<std::pair<std::string, unsigned short>> m_questions;
    std::vector<unsigned long> m_neIds;
    std::vector<int> m_oamQuestions;

private:
    bool Answer(const char* question, unsigned short neType) {
        m_questions.emplace_back(question, neType);
        return neType == m_yes;
    }
};

/// Answers a number, and counts in an atomic word, from any number of threads.
class CountingInventory : public NS_SERVICE::InventoryBufif {
public:
    explicit CountingInventory(std::uint32_t neType) : m_neType(neType) {}

    bool QueryNEType(std::int64_t /*neId*/, std::uint32_t& neType, bool /*flag*/) override {
        m_calls.fetch_add(1, std::memory_order_relaxed);
        neType = m_neType;
        return true;
    }
    bool IsOamNumberOmitted(int neId) override { return neId % 2 != 0; }
    bool IsIPServiceNEType(unsigned short neType) override { return neType == m_neType; }
    bool IsKLVNEType(unsigned short neType) override { return neType == m_neType; }
    bool IsTransMultiSubShelf(unsigned long /*neId*/, unsigned short neType) override { return neType == m_neType; }

    std::uint32_t m_neType;
    std::atomic<std::uint64_t> m_calls{0};
};

/// A data-access service with one file at most.
class RecordingDataAccess : public NS_SERVICE::DAWSvcInterface, private NS_SERVICE::ConfigObject {
public:
    NS_SERVICE::ConfigObject* GetConfiguration(const std::string& path, const std::string& section) override {
        m_asked.emplace_back(path, section);
        return m_hasFile ? this : nullptr;
    }

    bool m_hasFile = true;
    int m_carrierProfile = 0;
    std::vector<std::pair<std::string, std::string>> m_asked;
    std::vector<std::string> m_items;

private:
    bool GetIntItemInfo(const std::string& key, int& value) override {
        m_items.push_back(key);
        value = m_carrierProfile;
        return true;
    }
};

/// A log service that keeps its records as texts; one thread.
class RecordingLog : public NS_SERVICE::LogSvcInterface, private NS_SERVICE::ModuleLogger {
public:
    struct Record {
        std::string file;
        std::string function;
        int line;
        int level;
        std::string message;

        bool operator==(const Record&) const = default;
    };
    using LoggerName = std::tuple<std::string, std::string, std::string>;

    NS_SERVICE::ModuleLogger* GetModuleLogger(const std::string& module, const std::string& subModule,
                                              const std::string& level) override {
        m_asked.emplace_back(module, subModule, level);
        if (m_throws) {
            throw std::string("no logger today");
        }
        return m_hasLogger ? this : nullptr;
    }

    bool m_hasLogger = true;
    bool m_throws = false;
    std::vector<LoggerName> m_asked;
    std::vector<Record> m_records;

private:
    void WriteLog(const std::string& file, const std::string& function, int line, int level, const char* format,
                  ...) override {
        std::array<char, 1024> message{};
        va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(message.data(), message.size(), format, arguments);
        va_end(arguments);
        m_records.push_back({file, function, line, level, message.data()});
    }
};

}  // namespace NS_TEST
