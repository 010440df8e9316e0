#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "platform/DescriptorChannel.h"
#include "platform/Process.h"

namespace tessel {

/// What a utility answered as a child process.
struct UtilityRun {
    int status = 0;
    std::string output = {};
    std::string errors = {};
    std::chrono::duration<double> duration{};
    ReceivedDescriptor received{ReceivedDescriptor::Outcome::closed, {}};

    struct Options {
        std::filesystem::path program;
        std::vector<std::string> arguments;
        std::map<std::string, std::string> environment = {};
    };

    static UtilityRun ofDiskUtility(const Options& options) {
        CollectingPipe output;
        UtilityRun run = launch(options, output.writingEnd(), &output);
        run.output = output.collected();
        return run;
    }

    static UtilityRun ofAuthorizationUtility(const Options& options) {
        DescriptorChannel channel = DescriptorChannel::create();
        UtilityRun run = launch(options, channel.sendingEnd.get(), nullptr);
        channel.sendingEnd.close();
        run.received = receiveDescriptor(channel.receivingEnd.get());
        return run;
    }

  private:
    static UtilityRun launch(const Options& options, int output, CollectingPipe* collected) {
        auto environment = options.environment;
        environment["LC_ALL"] = "C";
        CollectingPipe errors;
        const auto start = std::chrono::steady_clock::now();
        Process process = Process::launch({.executable = options.program,
                                           .arguments = options.arguments,
                                           .environment = environment,
                                           .standardOutput = output,
                                           .standardError = errors.writingEnd()});
        errors.closeWritingEnd();
        std::vector<Process::Stream> streams{errors.stream()};
        if (collected) {
            collected->closeWritingEnd();
            streams.push_back(collected->stream());
        }
        const auto ending = process.waitUntilExit({.streams = streams, .timeout = std::chrono::seconds(30)});
        return {.status = ending.termination.status,
                .errors = errors.collected(),
                .duration = std::chrono::steady_clock::now() - start};
    }
};

}  // namespace tessel
