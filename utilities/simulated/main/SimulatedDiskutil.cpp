#include <iostream>

#include "utilities/simulated/SimulatedDiskUtility.h"
#include "utilities/simulated/SimulatedProgram.h"

int main(int argumentCount, char** arguments) {
    return tessel::runSimulatedProgram({arguments, static_cast<size_t>(argumentCount)},
                                       [](const auto& reader, const auto& words) {
                                           tessel::SimulatedDiskUtility disks(reader);
                                           return tessel::runDiskUtility(words, disks, std::cout, std::cerr);
                                       });
}
