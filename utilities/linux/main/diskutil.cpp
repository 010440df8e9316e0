#include <iostream>
#include <vector>

#include "utilities/linux/LinuxDiskUtility.h"
#include "utilities/linux/system/LinuxSystem.h"

int main(int argumentCount, char* arguments[]) {
    const std::vector<std::string> words(arguments + 1, arguments + argumentCount);
    tessel::LinuxSystem system;
    tessel::LinuxDiskUtility disks(system);
    return tessel::runDiskUtility(words, disks, std::cout, std::cerr);
}
