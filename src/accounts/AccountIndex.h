#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace accounts {

/// What tells an account from the others. A new one has no number yet when the server is to give it.
struct AccountKey {
    std::string name;
    std::optional<std::int64_t> id;
};

/// The accounts' names and numbers, so that a look-up among 100,000 of them takes no scan. Where several
/// accounts answer, the one is found that a scan in row order would meet first. Kept in few large pieces of
/// memory, as a node for each name and number takes longer to make than all rows to be read.
class AccountIndex {
public:
    AccountIndex() = default;
    /// Of so many rows from 0 on.
    AccountIndex(std::size_t rows, const std::function<AccountKey(std::size_t row)>& keyOf);

    void Clear() { *this = AccountIndex(); }
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
    using Id = std::pair<std::int64_t, std::size_t>;

    /// A row in a chain; a number this small makes the chains half as large.
    using Link = std::uint32_t;
    static constexpr Link kEnd = std::numeric_limits<Link>::max();

    std::size_t ChainOf(const std::string& name) const;
    std::vector<std::size_t> RowsOfName(const std::string& name) const;
    void Chain(std::size_t row);
    void ChainAll();

    /// By row; a row that is not in the index has none.
    std::vector<std::optional<std::string>> names_;
    /// The first row of each chain of names, and by row the next one in its chain.
    std::vector<Link> first_;
    std::vector<Link> next_;
    /// Numbers and rows, in order.
    std::vector<Id> ids_;
};

} // namespace accounts
