#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "platform/DescriptorChannel.h"
#include "platform/Process.h"
#include "rehearsal/SimulatedReader.h"

namespace tessel {

/// An empty reader in a folder of its own, and the utilities as child processes.
class SimulatedReaderTest : public testing::Test {
  protected:
    struct Run {
        int status = 0;
        std::string output;
        std::string errors;
        std::chrono::duration<double> duration{};
        ReceivedDescriptor received{ReceivedDescriptor::Outcome::closed, {}};
    };

    ~SimulatedReaderTest() override { std::filesystem::remove_all(folder); }

    /// "disk4", with one mounted volume.
    void addCard() {
        reader.addDisk({.identifier = "disk4",
                        .mediaName = "SDHC Card",
                        .sizeBytes = cardSize,
                        .partitions = {{.identifier = "disk4s1", .mountPoint = "/Volumes/BOOT"}}});
    }

    Run diskutil(const std::vector<std::string>& arguments) {
        CollectingPipe output;
        Run run = launch(reader.utilities().diskUtility, arguments, output.writingEnd(), &output);
        run.output = output.collected();
        return run;
    }

    Run authopen(const std::vector<std::string>& arguments = {"-stdoutpipe", "-o", "2", "/dev/rdisk4"}) {
        DescriptorChannel channel = DescriptorChannel::create();
        Run run =
            launch(reader.utilities().authorizationUtility, arguments, channel.sendingEnd.get(), nullptr);
        channel.sendingEnd.close();
        run.received = receiveDescriptor(channel.receivingEnd.get());
        return run;
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

    static Run launch(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                      int output, CollectingPipe* collected) {
        CollectingPipe errors;
        const auto start = std::chrono::steady_clock::now();
        Process process = Process::launch({.executable = program,
                                           .arguments = arguments,
                                           .environment = {{"LC_ALL", "C"}},
                                           .standardOutput = output,
                                           .standardError = errors.writingEnd()});
        errors.closeWritingEnd();
        std::vector<Process::Stream> streams{errors.stream()};
        if (collected) {
            collected->closeWritingEnd();
            streams.push_back(collected->stream());
        }
        const auto ending = process.waitUntilExit({.streams = streams, .timeout = std::chrono::seconds(30)});
        Run run;
        run.status = ending.termination.status;
        run.errors = errors.collected();
        run.duration = std::chrono::steady_clock::now() - start;
        return run;
    }
};

}  // namespace tessel
