#include "utilities/linux/system/ActiveFileSystems.h"

#include <sys/quota.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "utilities/linux/system/DeviceUses.h"
#include "utilities/linux/system/HelperProcess.h"

namespace tessel {

namespace {

using Time = BlockSystem::Time;

constexpr char active = '1';
constexpr char inactive = '0';

/// Asks the kernel which format the quotas of the device's file system have, a question that needs no rights.
/// Returns 0 or the errno of the answer.
int askForQuotas(const char* device) {
    int format = 0;
    const int result = quotactl(QCMD(Q_GETFMT, USRQUOTA), device, 0, reinterpret_cast<char*>(&format));
    return result == 0 ? 0 : errno;
}

/// Writes a letter for each device, in their order.
void writeAnswers(const std::vector<std::string>& devices, int answers) {
    for (const std::string& device : devices) {
        const char answer = askForQuotas(device.c_str()) == ENODEV ? inactive : active;
        if (write(answers, &answer, 1) != 1) return;
    }
}

}  // namespace

bool noteActiveFileSystems(DiskSnapshot& snapshot, const KernelDevice& disk, Time deadline) {
    // A kernel without quotas gives the same answer for every device.
    if (askForQuotas("/dev/null") == ENOSYS) return true;
    std::vector<std::string> names;
    std::vector<std::string> paths;
    for (const KernelDevice* part : partsOf(snapshot, disk)) {
        if (!part->mounts.empty()) continue;
        names.push_back(part->name);
        paths.push_back("/dev/" + part->name);
    }
    const bool isThereTime = deadline > std::chrono::steady_clock::now();
    const std::string answers =
        isThereTime ? answersOf([&](int descriptor) { writeAnswers(paths, descriptor); }, deadline) : "";
    for (size_t index = 0; index < names.size(); ++index) {
        if (index < answers.size() && answers[index] == inactive) continue;
        changeDevice(snapshot, names[index], [](KernelDevice& part) { part.isFileSystemActive = true; });
    }
    return answers.size() == names.size();
}

}  // namespace tessel
