#include "supervision/BackupClock.h"

#include <cmath>

namespace supervision {

double BackupClock::MinutesLeft(const BackupSettings& settings) const {
    return std::floor((settings.periodMinutes * 60 - static_cast<double>(seconds_)) / 60);
}

} // namespace supervision
