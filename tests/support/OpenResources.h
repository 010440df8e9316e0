#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace tessel {

/// Returns the paths that the open descriptors of this process lead to.
inline std::vector<std::string> openDescriptors() {
    std::vector<std::string> targets;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/fd")) {
        std::error_code error;
        auto target = std::filesystem::read_symlink(entry.path(), error).string();
        if (error == std::errc::invalid_argument) target = entry.path().string();
        const bool closedMeanwhile = target.empty();
        const bool isIterator = target.starts_with("/proc/");
        if (!closedMeanwhile && !isIterator) targets.push_back(target);
    }
    std::ranges::sort(targets);
    return targets;
}

/// Returns the open descriptors as soon as all are among those, or after a while: a read of an image that was
/// left behind closes its file only when it ends.
inline std::vector<std::string> settledDescriptors(const std::vector<std::string>& before) {
    for (int attempt = 0; attempt < 200 && !std::ranges::includes(before, openDescriptors()); ++attempt)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return openDescriptors();
}

/// Fails a test that leaves a descriptor open or a child behind.
class LeavesNothingOpen : public testing::Test {
  protected:
    void TearDown() override {
        if (mayCloseLate)
            EXPECT_THAT(settledDescriptors(before), testing::IsSubsetOf(before));
        else
            EXPECT_EQ(openDescriptors(), before);
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child was not waited for";
    }

    std::vector<std::string> before = openDescriptors();
    bool mayCloseLate = false;  ///< whether the read of an image may have been left behind
};

}  // namespace tessel
