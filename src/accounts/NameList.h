#pragma once

#include <string>
#include <vector>

namespace accounts {

/// The names of a list, once more where they can be searched at every key: asking a list control for 100,000
/// entries takes too long.
class NameList {
public:
    void Clear();
    /// Makes room for so many names.
    void Expect(int count) { names_.reserve(static_cast<std::size_t>(count)); }
    void Add(const std::string& name);
    void Set(int index, const std::string& name);
    void Remove(int index);

    int Count() const { return static_cast<int>(names_.size()); }
    const std::string& At(int index) const { return names_[static_cast<std::size_t>(index)]; }
    /// First entry equal to `name` to the letter; -1 for none.
    int IndexOf(const std::string& name) const;
    /// First entry from `from` on that starts with `text`, letter case aside; -1 for none.
    int FindPrefix(const std::string& text, int from = 0) const;
    /// Makes the first `count` names ready for FindPrefix, which does what is left of it.
    void Prepare(int count) const;

private:
    std::vector<std::string> names_;
    /// The first ones in capitals, as many as were needed so far.
    mutable std::vector<std::string> upper_;
};

} // namespace accounts
