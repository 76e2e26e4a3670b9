#include "config/SettingNumbers.h"

#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "servers/Priority.h"

namespace config {

int CheckValueOf(std::string_view text) {
    try {
        return common::CInt(text) != 0 ? 1 : 0;
    } catch (const RuntimeError& error) {
        return error.Number() == common::kOverflow ? 1 : 0;
    }
}

int PriorityOf(std::string_view text) {
    return modServerControl::PriorityIndexIn(text).value_or(kNormalPriority);
}

} // namespace config
