#include "accounts/NameList.h"

#include "common/Text.h"

#include <algorithm>

namespace accounts {

void NameList::Clear() {
    names_.clear();
    upper_.clear();
}

void NameList::Add(const std::string& name) {
    names_.push_back(name);
}

void NameList::Set(int index, const std::string& name) {
    const auto at = static_cast<std::size_t>(index);
    names_[at] = name;
    if (at < upper_.size())
        upper_[at] = common::UpperCase(name);
}

void NameList::Remove(int index) {
    names_.erase(names_.begin() + index);
    if (static_cast<std::size_t>(index) < upper_.size())
        upper_.erase(upper_.begin() + index);
}

int NameList::IndexOf(const std::string& name) const {
    const auto found = std::ranges::find(names_, name);
    return found == names_.end() ? -1 : static_cast<int>(found - names_.begin());
}

void NameList::Prepare(int count) const {
    upper_.reserve(names_.size());
    while (upper_.size() < static_cast<std::size_t>(count))
        upper_.push_back(common::UpperCase(names_[upper_.size()]));
}

int NameList::FindPrefix(const std::string& text, int from) const {
    const std::string prefix = common::UpperCase(text);
    Prepare(Count());
    for (auto i = static_cast<std::size_t>(std::max(from, 0)); i < upper_.size(); ++i)
        if (upper_[i].starts_with(prefix))
            return static_cast<int>(i);
    return -1;
}

} // namespace accounts
