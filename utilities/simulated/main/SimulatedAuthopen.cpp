#include <unistd.h>

#include <iostream>

#include "utilities/simulated/SimulatedProgram.h"
#include "utilities/simulated/SimulatedRawDiskOpener.h"

int main(int argumentCount, char** arguments) {
    return tessel::runSimulatedProgram(
        {arguments, static_cast<size_t>(argumentCount)}, [](const auto& reader, const auto& words) {
            tessel::SimulatedRawDiskOpener disks(reader);
            return tessel::runAuthorizationUtility(words, disks, STDOUT_FILENO, std::cerr);
        });
}
