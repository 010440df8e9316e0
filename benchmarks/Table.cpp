#include "benchmarks/Table.h"

#include <chrono>
#include <cstdio>

namespace tessel::benchmark {

double secondsOf(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void printHeader(const std::string& title) {
    std::printf("\n%s\n%-52s %12s %12s %8s %8s\n", title.c_str(), "", "ours", "compared", "ratio", "limit");
}

void printRow(const Row& row) {
    const double ratio = row.ours / row.theirs;
    std::printf("%-52s %8.3f %-3s %8.3f %-3s %8.2f", row.name.c_str(), row.ours, row.unit.c_str(), row.theirs,
                row.unit.c_str(), ratio);
    if (row.limit) std::printf(" %8.2f %s", *row.limit, ratio <= *row.limit ? "met" : "MISSED");
    std::printf("\n");
    std::fflush(stdout);
}

void printLeftOut(const std::string& name, const std::string& reason) {
    std::printf("%-52s left out: %s\n", name.c_str(), reason.c_str());
}

}  // namespace tessel::benchmark
