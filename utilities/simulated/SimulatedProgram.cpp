#include "utilities/simulated/SimulatedProgram.h"

#include "utilities/CommandLine.h"

#include <iostream>

namespace tessel {

int runSimulatedProgram(
    std::span<char*> commandLine,
    const std::function<int(const ReaderFolder& reader, std::span<const std::string> arguments)>& utility) {
    try {
        const std::filesystem::path program = commandLine.front();
        const std::vector<std::string> arguments(commandLine.begin() + 1, commandLine.end());
        std::string call = program.filename().string();
        for (const std::string& argument : arguments)
            call += " " + argument;

        const ReaderFolder reader(program.parent_path());
        reader.logCall(call);
        return utility(reader, arguments);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return failure;
    }
}

}  // namespace tessel
