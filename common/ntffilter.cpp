#include <atomic>
#include <bitset>
#include <new>
#include <string>
#include <vector>

#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/utilcommon.h>
#include <kx_platform/textutil.h>

#include "common/loadonce.h"
#include "frame/log.h"
#include "frame/singleton.h"

namespace NS_UTIL {

namespace {

// The set that the switch of the one filter chooses, in order, loaded with it. A search in a set mispredicts branches.
auto& listed = *new std::vector<int>;

bool IsListed(int notificationId) {
    if (listed.empty()) {
        return false;
    }
    const int* below = listed.data();
    for (std::size_t left = listed.size(); left > 1;) {
        const std::size_t half = left / 2;
        below = below[half] <= notificationId ? below + half : below;  // a conditional move
        left -= half;
    }
    return *below == notificationId;
}

void GetEventFilterList(std::set<int>& list, const std::string& item) {
    std::string value;
    if (!UtilCommon::Instance()->GetSupportCfgItem(item, value)) {
        return;
    }
    std::vector<std::string> tokens;
    if (!SplitStringByTag(value, tokens, ',', std::bitset<8>{})) {
        NS_FRAME::UTIL_COMMON_LOG.Write(1008, 0, "[GetEventFilterList]: %s=%s is empty or wrong", item.c_str(),
                                        value.c_str());
    }
    for (const std::string& token : tokens) {
        if (const int notificationId = Str2Int(token); notificationId > 0) {
            list.insert(notificationId);
        }
    }
}

}  // namespace

std::atomic<NtfFilter*> NtfFilter::m_pInstance{nullptr};

// Registered with the first filter, not when the library is loaded: handlers run before those that were registered
// earlier. So the filter's lock is taken before the locks of a log service and of the singletons, in the order in which
// a filter takes them that loads its items.
class NtfFilterOverFork {
public:
    static void RegisterOnce() {
        static std::atomic<bool> isRegistered{false};
        if (!isRegistered.exchange(true) && pthread_atfork(BeforeFork, AfterForkInParent, AfterForkInChild) != 0) {
            isRegistered.store(false);
            throw std::bad_alloc();
        }
    }

    static void BeforeFork() {
        NtfFilter* const filter = NtfFilter::m_pInstance.load();
        if (filter != nullptr && !isLoading) {
            overFork.BeforeFork(filter->m_bInit, WriteLock{*filter->m_rwLock});
        }
    }

    static void AfterForkInParent() {
        NtfFilter* const filter = NtfFilter::m_pInstance.load();
        if (filter != nullptr && !isLoading) {
            overFork.AfterForkInParent(WriteLock{*filter->m_rwLock});
        }
    }

    static void AfterForkInChild() {
        NtfFilter* const filter = NtfFilter::m_pInstance.load();
        if (filter == nullptr) {
            return;
        }
        const WriteLock lock{*filter->m_rwLock};
        if (isLoading) {
            lock.ReleaseInChild();
            static_cast<void>(lock.Take());  // in the name of the child's thread, which releases it after loading
        } else {
            overFork.AfterForkInChild(lock);
        }
    }

    // While the calling thread loads the items: a log service that it calls may fork.
    struct Loading {
        Loading() { isLoading = true; }
        ~Loading() { isLoading = false; }
        Loading(const Loading&) = delete;
        Loading& operator=(const Loading&) = delete;
    };

private:
    static thread_local constinit bool isLoading;
    static LockOverFork overFork;
};

thread_local constinit bool NtfFilterOverFork::isLoading = false;
LockOverFork NtfFilterOverFork::overFork;

NtfFilter* NtfFilter::Instance() {
    return NS_FRAME::GetInstance(m_pInstance, [] { return new NtfFilter; });
}

void NtfFilter::Destroy() {
    NS_FRAME::DestroyInstance(m_pInstance, [](NtfFilter* instance) { delete instance; });
}

NtfFilter::NtfFilter() : m_rwLock(std::make_unique<ACE_RW_Thread_Mutex>()) {
    NtfFilterOverFork::RegisterOnce();
}

NtfFilter::~NtfFilter() = default;

void NtfFilter::Load() {
    // An earlier load may have run out of memory halfway.
    m_nEventSwitch = 0;
    m_setWhiteList.clear();
    m_setBlackList.clear();
    listed.clear();
    std::string value;
    if (UtilCommon::Instance()->GetSupportCfgItem("EventSwitch", value)) {
        m_nEventSwitch = Str2Int(value);
    }
    NS_FRAME::UTIL_COMMON_LOG.Write(1042, 1, "[NtfFilter::IsFilteNtf]: EventSwitch=%d", m_nEventSwitch);
    if (m_nEventSwitch == EVENT_SWITCH_WHITE_LIST) {
        GetEventFilterList(m_setWhiteList, "Whitelist");
        m_setWhiteList.insert(ALWAYS_PASSING_NOTIFICATION);
        listed.assign(m_setWhiteList.begin(), m_setWhiteList.end());
    } else if (m_nEventSwitch == EVENT_SWITCH_BLACK_LIST) {
        GetEventFilterList(m_setBlackList, "Blacklist");
        listed.assign(m_setBlackList.begin(), m_setBlackList.end());
    } else {
        m_nEventSwitch = 0;
    }
}

bool NtfFilter::IsFilteNtf(int notificationId) {
    LoadOnce(m_bInit, WriteLock{*m_rwLock}, [this] {
        const NtfFilterOverFork::Loading loading;
        Load();
    });
    // Do not correct the two messages, which name another class: operators search for them as they are.
    if (m_nEventSwitch == EVENT_SWITCH_WHITE_LIST && !IsListed(notificationId)) {
        NS_FRAME::UTIL_COMMON_LOG.Write(
            1069, 3, "[UtilCommon::IsFilteNtf]: the Notify(ID = %d) is filtered by WhiteList", notificationId);
        return true;
    }
    if (m_nEventSwitch == EVENT_SWITCH_BLACK_LIST && IsListed(notificationId)) {
        NS_FRAME::UTIL_COMMON_LOG.Write(
            1075, 3, "[UtilCommon::IsFilteNtf]: the Notify(ID = %d) is filtered by BlackList", notificationId);
        return true;
    }
    return false;
}

}  // namespace NS_UTIL
