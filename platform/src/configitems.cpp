#include <algorithm>
#include <charconv>
#include <functional>
#include <optional>

#include <kx_platform/configitems.h>
#include <kx_platform/textutil.h>

namespace NS_BUNDLEMGR1 {

namespace {

// The number that text is, whole; nothing else counts as an integer.
std::optional<int> WholeNumber(const std::string& text) {
    const char* begin = text.data();
    const char* const end = begin + text.size();
    if (end - begin > 1 && *begin == '+' && begin[1] != '-') {
        ++begin;  // from_chars knows no plus sign
    }
    int number = 0;
    const auto [rest, error] = std::from_chars(begin, end, number);
    if (error != std::errc{} || rest != end) {
        return std::nullopt;
    }
    return number;
}

std::vector<int> Numbers(const std::string& list) {
    std::vector<std::string> pieces;
    NS_UTIL::SplitStringByTag(list, pieces, ',', {});
    std::vector<int> numbers(pieces.size());
    std::transform(pieces.begin(), pieces.end(), numbers.begin(),
                   [](const std::string& piece) { return NS_UTIL::Str2Int(piece); });
    return numbers;
}

}  // namespace

ConfigItem::~ConfigItem() = default;

CorbaConfigItems* CorbaConfigItems::Instance() {
    static auto* const instance = new CorbaConfigItems;  // never deleted: items are referred to until the process ends
    return instance;
}

bool CorbaConfigItems::GetIntItemInfo(const std::string& key, int& value) {
    const ConfigItem* const item = Find(key).item;
    return item != nullptr && item->GetInt(value);
}

bool CorbaConfigItems::GetStrItemInfo(const std::string& key, std::string& value) {
    const ConfigItem* const item = Find(key).item;
    if (item == nullptr) {
        return false;
    }
    ReadPin pin;
    const std::string* const text = item->GetText(pin);
    if (text == nullptr) {
        return false;
    }
    value = *text;
    return true;
}

bool CorbaConfigItems::HasItem(const std::string& key) noexcept {
    const ConfigItem* const item = Find(key).item;
    return item != nullptr && item->m_published.load() != nullptr;
}

void CorbaConfigItems::SetItem(const std::string& key, const std::string& value) {
    std::list<ConfigItem::Value> only{{value, Numbers(value)}};
    const std::lock_guard lock(m_mutex);
    Assign(FindOrMake(key), std::move(only));
}

void CorbaConfigItems::RemoveItem(const std::string& key) {
    const std::lock_guard lock(m_mutex);
    if (ConfigItem* const item = Find(key).item) {
        Assign(*item, {});
    }
}

void CorbaConfigItems::Clear() {
    const std::lock_guard lock(m_mutex);
    for (ConfigItem* item = m_all; item != nullptr; item = item->m_next) {
        Assign(*item, {});
    }
}

const ConfigItem& CorbaConfigItems::GetItem(std::string_view key) {
    if (const ConfigItem* const item = Find(key).item) {
        return *item;
    }
    const std::lock_guard lock(m_mutex);
    return FindOrMake(key);
}

CorbaConfigItems::Found CorbaConfigItems::Find(std::string_view key) noexcept {
    std::size_t hash = std::hash<std::string_view>{}(key);
    std::atomic<ConfigItem*>* place = &m_root;
    ConfigItem* item = place->load(std::memory_order_acquire);
    while (item != nullptr && item->GetKey() != key) {
        place = &item->m_children[hash % item->m_children.size()];
        hash /= item->m_children.size();
        item = place->load(std::memory_order_acquire);
    }
    return {*place, item};
}

// The caller holds m_mutex.
ConfigItem& CorbaConfigItems::FindOrMake(std::string_view key) {
    auto [place, item] = Find(key);
    if (item == nullptr) {
        item = new ConfigItem(std::string(key));
        item->m_next = m_all;
        m_all = item;
        place.store(item);
    }
    return *item;
}

// The caller holds m_mutex. Replaced values are freed at this or a later change, as soon as no thread reads them.
void CorbaConfigItems::Assign(ConfigItem& item, std::list<ConfigItem::Value>&& value) noexcept {
    const ConfigItem::Value* const published = value.empty() ? nullptr : &value.front();
    const std::optional<int> number = published != nullptr ? WholeNumber(published->text) : std::nullopt;
    item.m_number.store(number ? (ConfigItem::IS_NUMBER | static_cast<std::uint32_t>(*number)) : 0);
    item.m_published.store(published);
    m_retired.splice(m_retired.end(), item.m_value);
    item.m_value.swap(value);
    m_retired.remove_if([](const ConfigItem::Value& retired) { return !ReadPin::IsPinned(&retired); });
}

}  // namespace NS_BUNDLEMGR1
