#pragma once

#include "config/CInterface.h"

#include <cstddef>
#include <memory>
#include <vector>

/// The network interfaces in the order of the system's table, counted from 1.
class CInterfaces {
public:
    /// Appends the interface and owns it from then on: the caller's pointer, which must hold one, is empty
    /// afterwards. Returns the interface.
    CInterface& Add(std::unique_ptr<CInterface>& newInterface);

    std::size_t Count() const { return interfaces_.size(); }

    /// The interface at a position from 1 to Count. Raises 9 (subscript out of range) for any other.
    CInterface& Item(std::size_t index) const;

    /// Removes the interface at a position from 1 to Count. Raises 9 for any other.
    void Remove(std::size_t index);

    /// All interfaces, for a loop.
    const std::vector<std::unique_ptr<CInterface>>& NewEnum() const { return interfaces_; }

private:
    std::size_t PlaceOf(std::size_t index) const;

    std::vector<std::unique_ptr<CInterface>> interfaces_;
};
