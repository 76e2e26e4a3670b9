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
    upper_.push_back(common::UpperCase(name));
}

void NameList::Set(int index, const std::string& name) {
    names_[static_cast<std::size_t>(index)] = name;
    upper_[static_cast<std::size_t>(index)] = common::UpperCase(name);
}

void NameList::Remove(int index) {
    names_.erase(names_.begin() + index);
    upper_.erase(upper_.begin() + index);
}

int NameList::IndexOf(const std::string& name) const {
    const auto found = std::ranges::find(names_, name);
    return found == names_.end() ? -1 : static_cast<int>(found - names_.begin());
}

int NameList::FindPrefix(const std::string& text, int from) const {
    const std::string prefix = common::UpperCase(text);
    for (auto i = static_cast<std::size_t>(std::max(from, 0)); i < upper_.size(); ++i)
        if (upper_[i].starts_with(prefix))
            return static_cast<int>(i);
    return -1;
}

} // namespace accounts
