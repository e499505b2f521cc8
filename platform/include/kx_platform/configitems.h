/// The configuration items of the process, by key.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <kx_platform/export.h>
#include <kx_platform/readpin.h>

namespace NS_BUNDLEMGR1 {

/// One configuration item. It lives as long as the process, also while it has no value: a reader may look it up once
/// and then ask it at every call. Reading takes no lock (`readpin.h` says how that is safe). Any thread.
class KX_PLATFORM_API ConfigItem {
public:
    /// An item without a value. Users get theirs from `CorbaConfigItems::GetItem`.
    explicit ConfigItem(std::string key) : m_key(std::move(key)) {}
    ConfigItem(const ConfigItem&) = delete;
    ConfigItem& operator=(const ConfigItem&) = delete;
    ~ConfigItem();

    /// The key.
    const std::string& GetKey() const { return m_key; }

    /// The value as a number: an optional sign and decimal digits, nothing else, within 32 bits. False, and
    /// `value` untouched, if the item is missing or is no such number.
    bool GetInt(int& value) const noexcept {
        const std::uint64_t number = m_number.load(std::memory_order_acquire);
        if ((number & IS_NUMBER) == 0) {
            return false;
        }
        value = static_cast<int>(static_cast<std::uint32_t>(number));
        return true;
    }

    /// The value as text, valid until `pin` is destroyed or pins something else; null if the item is missing: then
    /// nothing is pinned.
    const std::string* GetText(ReadPin& pin) const noexcept {
        const Value* const value = pin.Protect(m_published);
        return value != nullptr ? &value->text : nullptr;
    }

    /// The value as a list, valid as the text is: each piece between "," as `NS_UTIL::Str2Int` reads it, empty pieces
    /// left out. Null if the item is missing.
    const std::vector<int>* GetNumbers(ReadPin& pin) const noexcept {
        const Value* const value = pin.Protect(m_published);
        return value != nullptr ? &value->numbers : nullptr;
    }

private:
    friend class CorbaConfigItems;

    // The numbers are read when the item is set: going through the text at every call is slower.
    struct Value {
        std::string text;
        std::vector<int> numbers;
    };

    static constexpr std::uint64_t IS_NUMBER = std::uint64_t{1} << 32U;

    std::string m_key;
    std::list<Value> m_value;  // one or none; a list, so that it can be retired without any memory
    std::atomic<const Value*> m_published{nullptr};
    // The low half is the number. One word, so that reading it needs no pin.
    std::atomic<std::uint64_t> m_number{0};
    std::array<std::atomic<ConfigItem*>, 4> m_children{};  // in the trie of `CorbaConfigItems`
    ConfigItem* m_next = nullptr;                          // in its list of all items
};

/// The reader of configuration items, and the place where a host sets them. A change is seen by the next read. Any
/// thread; reading takes no lock. Exceptions: std::bad_alloc, and from those that change items std::system_error if
/// their lock cannot be taken; nothing has changed then.
class KX_PLATFORM_API CorbaConfigItems {
public:
    /// The one set of items; lives until the process ends. Never null.
    static CorbaConfigItems* Instance();

    /// `ConfigItem::GetInt` of the item called `key`: false, and `value` untouched, if missing or not an integer.
    bool GetIntItemInfo(const std::string& key, int& value);
    /// Copies the text of the item called `key` into `value`; false, and `value` untouched, if missing.
    bool GetStrItemInfo(const std::string& key, std::string& value);

    /// Whether the item called `key` has a value.
    bool HasItem(const std::string& key) noexcept;

    /// Sets the item called `key`, whether it was there or not.
    void SetItem(const std::string& key, const std::string& value);
    /// Makes the item called `key` a missing one; nothing happens if it is missing already. Needs no memory, nor does
    /// `Clear`.
    void RemoveItem(const std::string& key);
    /// Makes every item a missing one.
    void Clear();

    /// The item called `key`. The first call with a key makes its item, without a value. An item stays valid until the
    /// process ends, so there are as many as there were different keys.
    const ConfigItem& GetItem(std::string_view key);

private:
    friend class ForkHandlers;

    CorbaConfigItems() = default;
    ~CorbaConfigItems() = default;

    // An item, or null, and the place where it is or would be added.
    struct Found {
        std::atomic<ConfigItem*>& place;
        ConfigItem* item;
    };

    Found Find(std::string_view key) noexcept;
    ConfigItem& FindOrMake(std::string_view key);
    void Assign(ConfigItem& item, std::list<ConfigItem::Value>&& value) noexcept;

    // A hash trie: two bits of a key's hash choose the child at each item. Items are added as leaves and never moved,
    // so readers need no lock while it grows, unlike with a table that is made anew.
    std::atomic<ConfigItem*> m_root{nullptr};
    ConfigItem* m_all = nullptr;             // the list of all items
    std::mutex m_mutex;                      // taken by those who change items
    std::list<ConfigItem::Value> m_retired;  // replaced values that a thread may still be reading
};

}  // namespace NS_BUNDLEMGR1
