#include <algorithm>
#include <atomic>
#include <map>
#include <utility>
#include <vector>

#include <kx_domain_util/fbtype.h>
#include <kx_platform/textutil.h>

#include "common/loadonce.h"
#include "common/tables.h"

namespace NS_UTIL {

namespace {

// A table that is built on first use. It is never destroyed, since threads may ask while the process ends.
template <class Table>
class LazyTable {
public:
    template <class Fill>
    const Table& Get(Fill fill) {
        LoadOnce(m_built, MutexLock{m_mutex}, [&] {
            Table table;
            fill(table);
            m_table = std::move(table);
        });
        return m_table;
    }

    void BeforeFork() { m_overFork.BeforeFork(m_built, MutexLock{m_mutex}); }
    void AfterForkInParent() { m_overFork.AfterForkInParent(MutexLock{m_mutex}); }
    void AfterForkInChild() { m_overFork.AfterForkInChild(MutexLock{m_mutex}); }

private:
    std::atomic<bool> m_built{false};
    ACE_Thread_Mutex m_mutex;
    LockOverFork m_overFork;
    Table m_table;
};

// Made when the library is loaded, not by a first call, in the middle of which another thread may fork.
auto& fbTypeNames = *new LazyTable<std::map<int, std::string>>;
// For each FB type a flag: whether it is listed. The flag of type N stands at N + 1.
auto& ptnAidFbTypes = *new LazyTable<std::vector<unsigned char>>;
auto& portObjectFbTypes = *new LazyTable<std::vector<unsigned char>>;

template <class Action>
void ForEachTable(Action action) {
    action(fbTypeNames);
    action(ptnAidFbTypes);
    action(portObjectFbTypes);
}

[[maybe_unused]] const int atFork = pthread_atfork([] { ForEachTable([](auto& table) { table.BeforeFork(); }); },
                                                   [] { ForEachTable([](auto& table) { table.AfterForkInParent(); }); },
                                                   [] { ForEachTable([](auto& table) { table.AfterForkInChild(); }); });

template <class Rows>
bool IsListed(LazyTable<std::vector<unsigned char>>& table, const Rows& rows, int fbType) {
    const auto& flags = table.Get([&](std::vector<unsigned char>& list) {
        list.resize(static_cast<std::size_t>(*std::max_element(rows.begin(), rows.end())) + 2);
        for (const int listed : rows) {
            list[static_cast<std::size_t>(listed) + 1] = 1;
        }
    });
    // Place 0 is for all types beyond the list. By a mask: a mispredicted branch would cost more than the look-up.
    const auto place = static_cast<std::size_t>(static_cast<unsigned int>(fbType)) + 1;
    return flags[place & -static_cast<std::size_t>(place < flags.size())] != 0;
}

}  // namespace

std::string GetFBTypeName(int fbType) {
    const std::map<int, std::string>& names = fbTypeNames.Get([](std::map<int, std::string>& map) {
        for (const FbTypeNameRow& row : NS_TABLE::FB_TYPE_NAMES) {
            map[row.fbType] = row.name;
        }
    });
    const auto entry = names.find(fbType);
    return entry != names.end() ? entry->second : Int2Str(fbType);
}

bool IsPTNAIDFBType(int fbType) {
    return IsListed(ptnAidFbTypes, NS_TABLE::PTN_AID_FB_TYPES, fbType);
}

bool IsPortObjByFbType(const int& fbType, const int& kind) {
    if (IsListed(portObjectFbTypes, NS_TABLE::PORT_OBJECT_FB_TYPES, fbType)) {
        return true;
    }
    return kind != 3 && (fbType == 2 || fbType == 3);
}

bool IsLogicalPortByType(int type) {
    return type > 65535;
}

std::string GetDomainStrByID(const unsigned int& domainId) {
    const auto* const row = std::find_if(NS_TABLE::DOMAIN_NAMES.begin(), NS_TABLE::DOMAIN_NAMES.end(),
                                         [&](const DomainNameRow& known) { return known.domainId == domainId; });
    return std::string(row != NS_TABLE::DOMAIN_NAMES.end() ? row->name : "UNKNOWN");
}

}  // namespace NS_UTIL
