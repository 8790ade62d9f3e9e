#pragma once

#include <chrono>

namespace tonvex {

/// The day that the user's calendar shows.
std::chrono::year_month_day Local_Day();

} // namespace tonvex
