#include <unistd.h>

#include <iostream>
#include <vector>

#include "utilities/linux/LinuxRawDiskOpener.h"
#include "utilities/linux/system/LinuxSystem.h"

int main(int argumentCount, char* arguments[]) {
    const std::vector<std::string> words(arguments + 1, arguments + argumentCount);
    tessel::LinuxSystem system;
    tessel::LinuxRawDiskOpener disks(system);
    return tessel::runAuthorizationUtility(words, disks, STDOUT_FILENO, std::cerr);
}
