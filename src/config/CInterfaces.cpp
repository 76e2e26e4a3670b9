#include "config/CInterfaces.h"

#include "common/RuntimeError.h"

std::size_t CInterfaces::PlaceOf(std::size_t index) const {
    if (index < 1 || index > interfaces_.size())
        throw RuntimeError(common::kSubscriptOutOfRange);
    return index - 1;
}

CInterface& CInterfaces::Add(std::unique_ptr<CInterface>& newInterface) {
    return *interfaces_.emplace_back(std::move(newInterface));
}

CInterface& CInterfaces::Item(std::size_t index) const {
    return *interfaces_[PlaceOf(index)];
}

void CInterfaces::Remove(std::size_t index) {
    interfaces_.erase(interfaces_.begin() + static_cast<std::ptrdiff_t>(PlaceOf(index)));
}
