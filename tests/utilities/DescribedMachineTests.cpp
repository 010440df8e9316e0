// The disks of the computers in tests/machines: which are listed, and which may be written to.

#include <gmock/gmock.h>

#include "foundation/Text.h"
#include "model/DiskTexts.h"
#include "model/SDCardPolicy.h"
#include "services/DiskPropertyLists.h"
#include "tests/support/DescribedMachine.h"
#include "utilities/linux/DiskDescriptions.h"
#include "utilities/linux/DiskProtection.h"

namespace tessel {

namespace {

std::string partsOf(const SDWholeDisk& disk) {
    std::vector<std::string> parts;
    for (const auto& part : disk.partitions)
        parts.push_back(part.id + ": " + part.displayName() + ", " + part.detailText() + ", " +
                        std::to_string(part.sizeBytes));
    return joined(parts, "; ");
}

/// The window's record of a disk, and the reason for its protection.
struct Answer {
    SDWholeDisk disk;
    std::optional<Protection> protection;

    std::optional<std::string> property(const std::string& expectation) const {
        if (expectation == "expected identifier") return disk.id;
        if (expectation == "expected name") return disk.mediaName;
        if (expectation == "expected bus") return disk.busProtocol;
        if (expectation == "expected path") return devicePathAndName(disk);
        if (expectation == "expected traits") return disk.capabilitySummary();
        if (expectation == "expected scheme") return disk.partitionScheme;
        if (expectation == "expected parts") return partsOf(disk);
        if (expectation == "expected verdict") return eligibilityFailureReason(disk).value_or("eligible");
        if (expectation == "expected text") return protectionText(disk).value_or("none");
        if (expectation == "expected protection") return protection ? protection->reason : "none";
        return std::nullopt;
    }
};

/// Reads the disks through the same text as the program, and returns them by the kernel's names.
std::map<std::string, Answer> answersOf(const DiskSnapshot& snapshot) {
    const DiskList list = parseDiskList(propertyListXML(diskListOf(snapshot)));
    std::map<std::string, Answer> answers;
    for (const std::string& identifier : list.identifiers) {
        const KernelDevice& device = listedDisk(snapshot, identifier);
        const auto disk = parseDiskInfo(propertyListXML(diskDetailsOf(snapshot, device)), identifier,
                                        list.layoutOf(identifier));
        EXPECT_EQ(list.layoutOf(identifier)->sizeBytes, device.sizeBytes);
        EXPECT_EQ(list.layoutOf(identifier)->isInternal, disk.value().isInternal);
        answers[device.name] = {disk.value(), protectionOf(snapshot, device)};
    }
    return answers;
}

}  // namespace

TEST(DescribedMachineTests, everyDiskIsWhatItIsExpectedToBe) {
    size_t expectations = 0;
    for (const auto& machine : std::filesystem::directory_iterator(TESSEL_DESCRIBED_MACHINES)) {
        const auto [snapshot, sections] = DescribedMachine::read(machine.path());
        const auto answers = answersOf(snapshot);
        for (const auto& [device, section] : sections) {
            SCOPED_TRACE(machine.path().filename().string() + ": " + device);
            const auto answer = answers.find(device);
            EXPECT_EQ(answer != answers.end(), section.contains("expected verdict"));
            for (const auto& [key, value] : section) {
                if (!key.starts_with("expected ")) continue;
                ++expectations;
                EXPECT_EQ(answer == answers.end() ? std::nullopt : answer->second.property(key), value)
                    << key;
            }
        }
    }
    EXPECT_GT(expectations, 100U);
}

}  // namespace tessel
