#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>

namespace accounts {

/// What tells an account from the others. A new one has no number yet when the server is to give it.
struct AccountKey {
    std::string name;
    std::optional<std::int64_t> id;
};

/// The accounts' names and numbers, so that a look-up among 100,000 of them takes no scan. Where several
/// accounts answer, the one is found that a scan in row order would meet first.
class AccountIndex {
public:
    void Clear();
    void Insert(std::size_t row, const AccountKey& key);
    void Erase(std::size_t row, const AccountKey& key);

    /// Names are compared to the letter.
    std::optional<std::size_t> RowOfName(const std::string& name) const;
    std::optional<std::size_t> RowOfId(std::int64_t id) const;
    /// How many accounts have the name.
    std::size_t CountOfName(const std::string& name) const;
    /// The smallest number from `from` upwards that no account has. Raises 6 past 32 bits.
    std::int32_t FreeId(std::int32_t from) const;

private:
    std::unordered_multimap<std::string, std::size_t> names_;
    std::set<std::pair<std::int64_t, std::size_t>> ids_;
};

} // namespace accounts
