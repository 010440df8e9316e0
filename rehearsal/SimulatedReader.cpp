#include "rehearsal/SimulatedReader.h"

#include <fstream>

#include "foundation/Errors.h"

namespace tessel {

namespace {

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

std::vector<std::string> SimulatedReader::disks() const {
    return reader.disks();
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
