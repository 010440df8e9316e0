#pragma once

#include <functional>
#include <optional>
#include <string>

namespace tessel::benchmark {

/// Returns how many seconds the work takes.
double secondsOf(const std::function<void()>& work);

/// One line of the table: what was measured, what it is compared with, and the target ratio.
struct Row {
    std::string name;
    double ours;
    double theirs;
    std::string unit;
    std::optional<double> limit;  ///< the largest acceptable ratio
};

void printHeader(const std::string& title);
void printRow(const Row& row);
void printLeftOut(const std::string& name, const std::string& reason);

}  // namespace tessel::benchmark
