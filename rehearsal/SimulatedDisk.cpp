#include "rehearsal/SimulatedDisk.h"

namespace tessel {

namespace {

PropertyList::List partitionList(const std::vector<SimulatedPartition>& partitions) {
    PropertyList::List list;
    for (const SimulatedPartition& partition : partitions) {
        PropertyList::Dictionary entry{{"DeviceIdentifier", partition.identifier},
                                       {"Size", partition.sizeBytes}};
        if (!partition.content.empty()) entry.emplace("Content", partition.content);
        if (!partition.volumeName.empty()) entry.emplace("VolumeName", partition.volumeName);
        if (!partition.mountPoint.empty()) entry.emplace("MountPoint", partition.mountPoint);
        if (!partition.volumes.empty()) entry.emplace("APFSVolumes", partitionList(partition.volumes));
        list.emplace_back(entry);
    }
    return list;
}

}  // namespace

PropertyList::Dictionary detailsOf(const SimulatedDisk& disk) {
    return {
        {"BusProtocol", disk.busProtocol},
        {"Content", disk.partitionScheme},
        {"DeviceBlockSize", uint64_t{disk.blockSize}},
        {"DeviceIdentifier", disk.identifier},
        {"DeviceLocation", disk.deviceLocation},
        {"DeviceNode", "/dev/" + disk.identifier},
        {"Ejectable", disk.isEjectable},
        {"IORegistryEntryName", disk.mediaName},
        {"Internal", disk.isInternal},
        {"MediaName", disk.mediaName},
        {"OSInternalMedia", disk.isInternal && !disk.isRemovable},
        {"Partitions", partitionList(disk.partitions)},
        {"Removable", disk.isRemovable},
        {"RemovableMedia", disk.isRemovable},
        {"Size", disk.sizeBytes},
        {"TotalSize", disk.sizeBytes},
        {"VirtualOrPhysical", disk.isPhysical ? "Physical" : "Virtual"},
        {"WholeDisk", true},
        {"Writable", disk.isWritable},
        {"WritableMedia", disk.isWritable},
    };
}

}  // namespace tessel
