#include "model/DiskInspection.h"

#include <gtest/gtest.h>

#include "tests/support/SampleDisks.h"

namespace tessel {

TEST(DiskInspectionTests, keepsTheListedDiskElseTheListedTargetElseNone) {
    const std::vector listed{sampleCard("disk4"), sampleCard("disk5")};
    const struct {
        std::optional<std::string> inspected;
        std::string target;
        std::optional<std::string> reconciled;
    } cases[] = {
        {"disk4", "disk5", "disk4"},      {"disk4", "", "disk4"},      {"disk9", "disk5", "disk5"},
        {"disk9", "disk8", std::nullopt}, {"disk9", "", std::nullopt}, {std::nullopt, "disk5", "disk5"},
        {std::nullopt, "", std::nullopt},
    };
    for (const auto& [inspected, target, reconciled] : cases) {
        EXPECT_EQ(reconciledInspection(inspected, target, listed), reconciled)
            << inspected.value_or("none") << ", " << target;
    }
}

}  // namespace tessel
