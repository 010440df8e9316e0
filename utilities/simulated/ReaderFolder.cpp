#include "utilities/simulated/ReaderFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>

#include "foundation/Errors.h"
#include "foundation/Text.h"
#include "platform/FileDescriptor.h"

namespace tessel {

namespace {

constexpr const char* detailsFile = "details.plist";
constexpr const char* behaviourFile = "behaviour.plist";
constexpr const char* outMark = "ejected";
constexpr const char* callsFile = "calls.log";

PropertyList::Dictionary readDictionary(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw posixError(path.string() + " could not be read", errno);
    const PropertyList value = parsePropertyList(std::string(std::istreambuf_iterator(file), {}));
    const PropertyList::Dictionary* dictionary = value.asDictionary();
    if (!dictionary) throw posixError(path.string() + " is not a dictionary", EINVAL);
    return *dictionary;
}

/// Writes so that another program, reading at the same time, finds either the old dictionary or the new one.
void writeDictionary(const std::filesystem::path& path, const PropertyList::Dictionary& dictionary) {
    const std::filesystem::path draft = path.string() + "." + std::to_string(getpid());
    if (!(std::ofstream(draft, std::ios::binary) << propertyListXML(dictionary) << std::flush))
        throw posixError(draft.string() + " could not be written", errno);
    std::filesystem::rename(draft, path);
}

}  // namespace

void ReaderFolder::logCall(std::string_view line) const {
    const std::filesystem::path path = folder / callsFile;
    const FileDescriptor log(open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644));
    // A single write keeps the lines of concurrent programs apart.
    const std::string bytes = std::string(line) + '\n';
    if (!log.isOpen()) throw posixError(path.string() + " could not be opened", errno);
    if (write(log.get(), bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
        throw posixError(path.string() + " could not be written", errno);
}

std::vector<std::string> ReaderFolder::calls() const {
    std::vector<std::string> lines;
    std::ifstream log(folder / callsFile);
    for (std::string line; std::getline(log, line);)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> ReaderFolder::disks() const {
    std::vector<std::string> identifiers;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (isWholeDiskIdentifier(name) && isIn(name)) identifiers.push_back(name);
    }
    std::ranges::sort(identifiers, [](const std::string& one, const std::string& other) {
        return std::pair(one.size(), one) < std::pair(other.size(), other);
    });
    return identifiers;
}

void ReaderFolder::setDetails(const std::string& disk, const PropertyList::Dictionary& details) const {
    writeDictionary(folder / disk / detailsFile, details);
}

void ReaderFolder::setBehaviour(const std::string& disk, const DiskBehaviour& behaviour) const {
    writeDictionary(folder / disk / behaviourFile, behaviour.dictionary());
}

void ReaderFolder::putIn(const std::string& disk) const {
    std::filesystem::remove(folder / disk / outMark);
}

void ReaderFolder::takeOut(const std::string& disk) const {
    const std::filesystem::path mark = folder / disk / outMark;
    if (!std::ofstream(mark)) throw posixError(mark.string() + " could not be written", errno);
}

PropertyList::Dictionary ReaderFolder::details(const std::string& disk) const {
    requireIn(disk);
    return readDictionary(folder / disk / detailsFile);
}

DiskBehaviour ReaderFolder::behaviour(const std::string& disk) const {
    requireIn(disk);
    const std::filesystem::path path = folder / disk / behaviourFile;
    return std::filesystem::exists(path) ? DiskBehaviour::from(readDictionary(path)) : DiskBehaviour{};
}

bool ReaderFolder::isIn(const std::string& disk) const {
    return std::filesystem::exists(folder / disk / detailsFile) &&
           !std::filesystem::exists(folder / disk / outMark);
}

void ReaderFolder::requireIn(const std::string& disk) const {
    if (!isIn(disk)) throw PlatformError(ENXIO, "Could not find disk: " + disk + ".");
}

}  // namespace tessel
