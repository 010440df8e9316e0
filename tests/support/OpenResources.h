#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace tessel {

/// The descriptors that this process has open, by what they lead to.
inline std::vector<std::string> openDescriptors() {
    std::vector<std::string> targets;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code closedMeanwhile;
        const auto target = std::filesystem::read_symlink(entry.path(), closedMeanwhile).string();
        if (!closedMeanwhile && !target.starts_with("/proc/")) targets.push_back(target);
    }
    std::ranges::sort(targets);
    return targets;
}

/// Fails the test when, at its end, a descriptor or a child is left that was not there when it began.
class LeavesNothingOpen : public testing::Test {
  protected:
    void TearDown() override {
        EXPECT_EQ(openDescriptors(), before);
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child was not waited for";
    }

  private:
    std::vector<std::string> before = openDescriptors();
};

}  // namespace tessel
