#include "platform/local_day.h"

#include <ctime>

namespace tonvex {

std::chrono::year_month_day Local_Day() {
    constexpr int FIRST_YEAR = 1900;
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    if (localtime_r(&now, &local) == nullptr)
        return {};
    return {std::chrono::year(local.tm_year + FIRST_YEAR),
            std::chrono::month(static_cast<unsigned>(local.tm_mon) + 1),
            std::chrono::day(static_cast<unsigned>(local.tm_mday))};
}

} // namespace tonvex
