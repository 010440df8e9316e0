#include "tests/support/DescribedMachine.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "foundation/Text.h"

namespace tessel {

namespace {

using Section = DescribedMachine::Section;

std::string textOf(const Section& section, const std::string& key, const std::string& otherwise = "") {
    const auto entry = section.find(key);
    return entry == section.end() ? otherwise : entry->second;
}

uint64_t numberOf(const Section& section, const std::string& key, uint64_t otherwise = 0) {
    return section.contains(key) ? std::stoull(section.at(key)) : otherwise;
}

bool flagOf(const Section& section, const std::string& key) {
    return textOf(section, key) == "yes";
}

std::vector<std::string> wordsOf(const Section& section, const std::string& key) {
    std::istringstream text(textOf(section, key));
    return {std::istream_iterator<std::string>(text), {}};
}

std::optional<uint64_t> udisksNumberOf(const Section& section) {
    if (textOf(section, "udisks diskseq") == "none") return std::nullopt;
    return numberOf(section, "udisks diskseq", numberOf(section, "diskseq"));
}

std::vector<Mount> mountsOf(const Section& section) {
    std::vector<Mount> mounts;
    if (section.contains("udisks mount")) mounts.push_back({section.at("udisks mount"), true});
    if (section.contains("mount")) mounts.push_back({section.at("mount"), false});
    return mounts;
}

KernelDevice deviceOf(const std::string& name, const Section& section, const std::string& path) {
    return {
        .name = name,
        .path = path,
        .sequenceNumber = numberOf(section, "diskseq"),
        .sequenceNumberAfterwards = numberOf(section, "diskseq afterwards", numberOf(section, "diskseq")),
        .sizeBytes = numberOf(section, "size"),
        .isReadOnly = flagOf(section, "read only"),
        .isRemovable =
            flagOf(section, section.contains("kernel removable") ? "kernel removable" : "removable"),
        .partitionNumber = static_cast<unsigned>(numberOf(section, "partition")),
        .cardType = textOf(section, "card type"),
        .databaseName = textOf(section, "database name"),
        .holders = wordsOf(section, "holders"),
        .slaves = wordsOf(section, "slaves"),
        .isSwap = flagOf(section, "swap"),
        .spansDisks = flagOf(section, "spans disks"),
        .mounts = mountsOf(section),
        .udisks = {.drive = textOf(section, "drive"),
                   .sequenceNumber = udisksNumberOf(section),
                   .vendor = textOf(section, "vendor"),
                   .model = textOf(section, "model"),
                   .media = textOf(section, "media"),
                   .isMediaAvailable = flagOf(section, "medium"),
                   .isMediaRemovable = flagOf(section, "removable"),
                   .isEjectable = flagOf(section, "ejectable"),
                   .fileSystem = textOf(section, "file system"),
                   .volumeName = textOf(section, "label"),
                   .partitionTable = textOf(section, "partition table")},
    };
}

}  // namespace

DescribedMachine DescribedMachine::read(const std::filesystem::path& file) {
    std::ifstream text(file);
    DescribedMachine described;
    std::string name;
    for (std::string line; std::getline(text, line);) {
        if (line.empty() || line.starts_with('#')) continue;
        if (line.starts_with('[')) {
            name = line.substr(1, line.find(']') - 1);
        } else {
            const auto equals = line.find('=');
            if (equals == std::string::npos) throw std::runtime_error("no key and value: " + line);
            described.sections[name][trimmed(line.substr(0, equals))] = trimmed(line.substr(equals + 1));
        }
    }
    described.snapshot.rootDevice = described.sections.at("machine").at("root");
    described.snapshot.hasZFSPools = flagOf(described.sections.at("machine"), "zfs pools");
    described.sections.erase("machine");
    for (const auto& [device, section] : described.sections) {
        const bool isPart = section.contains("part of");
        const std::string path = isPart
                                     ? described.sections.at(section.at("part of")).at("path") + "/" + device
                                     : section.at("path");
        described.snapshot.devices.push_back(deviceOf(device, section, path));
    }
    return described;
}

}  // namespace tessel
