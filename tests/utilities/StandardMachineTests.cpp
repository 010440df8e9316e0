#include "rehearsal/StandardMachine.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include "model/SDCardPolicy.h"
#include "services/DiskPropertyLists.h"
#include "tests/utilities/SimulatedReaderTest.h"

namespace tessel {

using StandardMachineTests = SimulatedReaderTest;

TEST_F(StandardMachineTests, onlyItsTwoCardsAreEligibleAndCanBeOpened) {
    addStandardMachine(reader);
    const DiskList list = parseDiskList(diskutil({"list", "-plist"}).output);
    ASSERT_THAT(list.identifiers, testing::ElementsAre("disk0", "disk2", "disk4", "disk5", "disk6", "disk7"));
    EXPECT_EQ(list.layoutOf("disk0")->partitions.size(), 4u);

    for (const std::string& identifier : list.identifiers) {
        const bool isCard = identifier == usbReaderCard || identifier == nativeSlotCard;
        const Run info = diskutil({"info", "-plist", "/dev/" + identifier});
        const auto disk = parseDiskInfo(info.output, identifier, list.layoutOf(identifier));
        ASSERT_TRUE(disk) << info.errors;
        EXPECT_EQ(!eligibilityFailureReason(*disk), isCard) << identifier;
        EXPECT_EQ(disk->sizeBytes, list.layoutOf(identifier)->sizeBytes);

        const Run opened = authopen({"-stdoutpipe", "-o", "2", "/dev/r" + identifier});
        EXPECT_EQ(opened.status, isCard ? 0 : 1) << identifier;
        EXPECT_EQ(opened.received.descriptor.isOpen(), isCard) << identifier;
        if (isCard) {
            EXPECT_EQ(lseek(opened.received.descriptor.get(), 0, SEEK_END),
                      static_cast<off_t>(disk->sizeBytes));
        }
    }
}

}  // namespace tessel
