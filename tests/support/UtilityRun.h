#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "platform/CollectingPipe.h"
#include "platform/DescriptorChannel.h"
#include "platform/Process.h"

namespace tessel {

/// The answer of a utility that ran as a child process.
struct UtilityRun {
    int status = 0;
    std::string output = {};
    std::string errors = {};
    ReceivedDescriptor received{ReceivedDescriptor::Outcome::closed, {}};

    static UtilityRun ofDiskUtility(const Command& command) {
        CollectingPipe output;
        UtilityRun run = launch(command, output.writingEnd(), &output);
        run.output = output.collected();
        return run;
    }

    static UtilityRun ofAuthorizationUtility(const Command& command) {
        DescriptorChannel channel = DescriptorChannel::create();
        UtilityRun run = launch(command, channel.sendingEnd.get(), nullptr);
        channel.sendingEnd.close();
        run.received = receiveDescriptor(channel.receivingEnd.get());
        return run;
    }

  private:
    static UtilityRun launch(Command command, int output, CollectingPipe* collected) {
        command.environment["LC_ALL"] = "C";
        CollectingPipe errors;
        Process process(command, {.standardOutput = output, .standardError = errors.writingEnd()});
        std::vector<Process::Stream> streams{errors.stream()};
        if (collected) streams.push_back(collected->stream());
        const auto ending = process.waitUntilExit({.streams = streams, .timeout = std::chrono::seconds(30)});
        return {.status = ending.termination.status, .errors = errors.collected()};
    }
};

}  // namespace tessel
