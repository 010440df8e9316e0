#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rehearsal/SimulatedReader.h"
#include "tests/support/UtilityRun.h"

namespace tessel {

/// An empty reader in a folder of its own, and the utilities as child processes.
class SimulatedReaderTest : public testing::Test {
  protected:
    using Run = UtilityRun;

    ~SimulatedReaderTest() override { std::filesystem::remove_all(folder); }

    /// "disk4", with one mounted volume.
    void addCard() {
        reader.addDisk({.identifier = "disk4",
                        .mediaName = "SDHC Card",
                        .sizeBytes = cardSize,
                        .partitions = {{.identifier = "disk4s1", .mountPoint = "/Volumes/BOOT"}}});
    }

    Run diskutil(const std::vector<std::string>& arguments) {
        return Run::ofDiskUtility({reader.utilities().diskUtility, arguments});
    }

    Run authopen(const std::vector<std::string>& arguments = {"-stdoutpipe", "-o", "2", "/dev/rdisk4"}) {
        return Run::ofAuthorizationUtility({reader.utilities().authorizationUtility, arguments});
    }

    static constexpr uint64_t cardSize = uint64_t{1} << 30;

    const std::filesystem::path folder = makeFolder();
    SimulatedReader reader{folder, TESSEL_SIMULATED_PROGRAMS};

  private:
    static std::filesystem::path makeFolder() {
        std::string name = testing::TempDir() + "reader.XXXXXX";
        if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
        return name;
    }
};

}  // namespace tessel
