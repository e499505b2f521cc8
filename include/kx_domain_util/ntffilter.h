#pragma once

#include <atomic>
#include <memory>
#include <set>

#include <kx_domain_util/export.h>

class ACE_RW_Thread_Mutex;

namespace NS_UTIL {

/// The values of configuration item "EventSwitch" that choose a list.
inline constexpr int EVENT_SWITCH_WHITE_LIST = 1;
inline constexpr int EVENT_SWITCH_BLACK_LIST = 2;

/// The notification that passes every white list, whatever the configuration says.
inline constexpr int ALWAYS_PASSING_NOTIFICATION = 2101250;

/// Decides which notifications are held back. The operator chooses by configuration item "EventSwitch": 1, only the
/// identifiers of item "Whitelist" pass; 2, those of item "Blacklist" are held back; anything else, or none, and all
/// pass. The lists are decimal identifiers separated by ",", read by `Str2Int`; those not above 0 are skipped.
///
/// The items are read once, at the first question; a change is seen after `Destroy`.
class KX_DOMAIN_UTIL_API NtfFilter {
public:
    /// The one instance, made on the first call. Null only when the process-wide lock cannot be taken. Any thread.
    static NtfFilter* Instance();
    /// Deletes the instance. Does not wait for threads that still ask it, or fork.
    static void Destroy();

    NtfFilter(const NtfFilter&) = delete;
    NtfFilter& operator=(const NtfFilter&) = delete;

    /// True: hold the notification back; false: let it pass. With a white list, identifier 2101250 always passes. What
    /// is held back is logged at level 3, so a log service must not ask the filter while it writes. After the first
    /// question it takes no lock, except for a record that is the first since a service came or went. Any thread.
    /// Exceptions: std::bad_alloc; those thrown by the log service propagate. After an exception while the items are
    /// read, the next question reads them again. The items are reached through `UtilCommon::Instance`: where that gives
    /// null, there is nothing to read them with, and the process crashes.
    bool IsFilteNtf(int notificationId);

private:
    friend class NtfFilterOverFork;

    NtfFilter();
    ~NtfFilter();

    void Load();

    static std::atomic<NtfFilter*> m_pInstance;

    std::unique_ptr<ACE_RW_Thread_Mutex> m_rwLock;  // by pointer, so that including this header needs no ACE
    std::set<int> m_setWhiteList;
    std::set<int> m_setBlackList;
    int m_nEventSwitch = 0;
    std::atomic<bool> m_bInit{false};
};

}  // namespace NS_UTIL
