#pragma once

#include <memory>
#include <string>
#include <vector>

#include <kx_domain_util/ntffilter.h>
#include <kx_standalone/host.h>

#include "cli/watchedfile.h"
#include "lines/fileinuse.h"

namespace NS_KX::NS_KXDU {

/// The configuration that decides which notifications are held back. It may change while lines are filtered.
class FilterConfiguration {
public:
    /// Loads the configuration in `folder`, and warns on standard error of what is doubtful in it. Throws `Failure`
    /// with `Cause::INPUT` if it cannot be loaded.
    explicit FilterConfiguration(const std::string& folder);
    ~FilterConfiguration();
    FilterConfiguration(const FilterConfiguration&) = delete;
    FilterConfiguration& operator=(const FilterConfiguration&) = delete;

    /// Whether the notification is held back. Any thread, except while `TakeOver` runs.
    [[nodiscard]] bool IsHeldBack(int notificationId) const { return m_filter->IsFilteNtf(notificationId); }

    /// The list that decides: "Whitelist", "Blacklist", or empty if all notifications pass.
    [[nodiscard]] const std::string& ListName() const noexcept { return m_list; }
    /// Whether this list has the notification. Threads: as above.
    [[nodiscard]] bool IsListed(int notificationId) const { return IsHeldBack(notificationId) != m_isWhiteList; }
    /// Whether there is a list, and the number has more or fewer digits than all identifiers in it.
    [[nodiscard]] bool IsImplausible(int number) const noexcept { return number < m_least || number > m_most; }

    /// Whether the file was changed since it was last loaded.
    [[nodiscard]] bool IsChanged() const { return m_file.IsChanged(); }
    /// Loads it again, and says on standard error what applies from now on. A file that cannot be loaded changes
    /// nothing, which is said too.
    void TakeOver();

    [[nodiscard]] const std::vector<FileInUse>& Files() const noexcept { return m_files; }

private:
    void NoteItems();

    std::vector<FileInUse> m_files;
    WatchedFile m_file;
    std::unique_ptr<NS_STANDALONE::Host> m_host;
    std::string m_list;
    bool m_isWhiteList = false;
    int m_least = 0;  // with as many digits as the smallest identifier in the list
    int m_most = 0;   // with as many digits as the largest one
    NS_UTIL::NtfFilter* m_filter = nullptr;
};

}  // namespace NS_KX::NS_KXDU
