#include <cstdlib>
#include <sstream>

#include "foundation/PropertyList.h"
#include "model/SDCardPolicy.h"
#include "services/DiskPropertyLists.h"
#include "tests/support/DescribedMachine.h"
#include "utilities/linux/DiskDescriptions.h"
#include "utilities/linux/DiskProtection.h"

using namespace tessel;

/// Checks that the program reads exactly the disks that the utility describes, whatever the computer looks
/// like, and never finds a protected one writable.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    DiskSnapshot snapshot;
    try {
        std::istringstream text(std::string(reinterpret_cast<const char*>(bytes), size));
        snapshot = DescribedMachine::read(text).snapshot;
    } catch (const std::exception&) {
        return 0;
    }
    const DiskList list = parseDiskList(propertyListXML(diskListOf(snapshot)));
    for (const KernelDevice* device : listedDisks(snapshot)) {
        const auto identifier = identifierOf(snapshot, *device);
        const auto disk = parseDiskInfo(propertyListXML(diskDetailsOf(snapshot, *device)), identifier,
                                        list.layoutOf(identifier));
        if (!disk || disk->id != identifier) std::abort();
        const bool isProtected = protectionOf(snapshot, *device) || device->isReadOnly;
        if (isProtected && (disk->isWritable || !eligibilityFailureReason(*disk))) std::abort();
    }
    return 0;
}
