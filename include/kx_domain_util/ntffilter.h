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

/// Decides which notifications are held back. The operator chooses by the configuration item "EventSwitch":
///
/// - 1: only the identifiers of item "Whitelist" pass;
/// - 2: the identifiers of item "Blacklist" are held back;
/// - any other value, or none: all pass.
///
/// The lists are decimal identifiers separated by ",", read by `Str2Int`. Identifiers below 1 are skipped.
///
/// The items are read once, at the first question; a change is seen after `Destroy`.
class KX_DOMAIN_UTIL_API NtfFilter {
public:
    /// The one instance, made on the first call. Null only if the process-wide lock cannot be taken. Any thread.
    static NtfFilter* Instance();
    /// Deletes the instance. No thread may still ask it, or fork, meanwhile.
    static void Destroy();

    NtfFilter(const NtfFilter&) = delete;
    NtfFilter& operator=(const NtfFilter&) = delete;

    /// Returns whether to hold the notification back. With a white list, identifier 2101250 always passes. Held back
    /// notifications are logged at level 3, so a log service must not ask the filter while it writes.
    ///
    /// Threads: any. After the first question it takes no lock, except for the first record after a service came or
    /// went. Exceptions: std::bad_alloc, and those thrown by the log service; if one is thrown while the items are
    /// read, the next question reads them again. The process crashes if `UtilCommon::Instance` returns null.
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
