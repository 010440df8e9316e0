#include "rehearsal/SimulatedReader.h"

#include <fstream>

#include "foundation/Errors.h"

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

void makeSparseFile(const std::filesystem::path& path, uint64_t size) {
    if (!std::ofstream(path)) throw posixError(path.string() + " could not be made", errno);
    std::filesystem::resize_file(path, size);
}

}  // namespace

SimulatedReader::SimulatedReader(const std::filesystem::path& readerFolder,
                                 const std::filesystem::path& programsFolder) :
    folder(std::filesystem::absolute(readerFolder)),
    reader(folder) {
    std::filesystem::create_directories(folder);
    if (!std::filesystem::is_empty(folder)) throw posixError(folder.string(), ENOTEMPTY);
    const auto programs = std::filesystem::absolute(programsFolder);
    std::filesystem::create_symlink(programs / "simulated-diskutil", utilities().diskUtility);
    std::filesystem::create_symlink(programs / "simulated-authopen", utilities().authorizationUtility);
}

void SimulatedReader::addDisk(const SimulatedDisk& disk) {
    std::filesystem::create_directory(folder / disk.identifier);
    makeMedium(disk);
    reader.setDetails(disk.identifier, detailsOf(disk));
}

void SimulatedReader::makeMedium(const SimulatedDisk& disk) {
    if (disk.medium == SimulatedDisk::Medium::none) return;
    const std::filesystem::path medium = mediumPath(disk.identifier);
    if (disk.medium == SimulatedDisk::Medium::plainFile || !LoopDevice::isAvailable()) {
        makeSparseFile(medium, disk.sizeBytes);
        return;
    }
    const std::filesystem::path file = medium.string() + ".img";
    makeSparseFile(file, disk.sizeBytes);
    LoopDevice loop({.file = file, .blockSize = disk.blockSize});
    std::filesystem::create_symlink(loop.path(), medium);
    loopDevices.emplace(disk.identifier, std::move(loop));
}

void SimulatedReader::setBehaviour(const std::string& identifier, const DiskBehaviour& behaviour) {
    reader.setBehaviour(identifier, behaviour);
}

void SimulatedReader::changeDetails(const std::string& identifier, const PropertyList::Dictionary& changes) {
    PropertyList::Dictionary details = reader.details(identifier);
    merge(details, changes);
    reader.setDetails(identifier, details);
}

void SimulatedReader::removeDisk(const std::string& identifier) {
    reader.takeOut(identifier);
}

void SimulatedReader::reinsert(const std::string& identifier) {
    reader.putIn(identifier);
}

std::filesystem::path SimulatedReader::mediumPath(const std::string& identifier) const {
    return reader.mediumPath(identifier);
}

std::vector<std::string> SimulatedReader::calls() const {
    return reader.calls();
}

SystemUtilities SimulatedReader::utilities() const {
    return {.diskUtility = folder / "diskutil", .authorizationUtility = folder / "authopen"};
}

}  // namespace tessel
