#include "platform/TimeOfDay.h"

#include <array>
#include <ctime>

namespace tessel {

std::string timeOfDayText() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::array<char, sizeof "00:00:00"> text{};
    std::strftime(text.data(), text.size(), "%H:%M:%S", &local);
    return text.data();
}

}  // namespace tessel
