#include "platform/linux/DiskStatistics.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <string_view>

namespace tessel {

namespace {

FileDescriptor openAttribute(const std::filesystem::path& path) {
    return FileDescriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC));
}

using Buffer = std::array<char, 512>;

/// Returns the current text of the attribute; empty when it can't be read.
std::string_view read(const FileDescriptor& attribute, Buffer& buffer) {
    const ssize_t count = pread(attribute.get(), buffer.data(), buffer.size(), 0);
    return count > 0 ? std::string_view(buffer.data(), static_cast<size_t>(count)) : std::string_view();
}

/// Returns the word at this place, counted from 0.
std::string_view wordAt(size_t place, std::string_view text) {
    constexpr std::string_view blanks = " \n";
    for (;; --place) {
        text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
        const auto word = text.substr(0, text.find_first_of(blanks));
        if (place == 0 || word.empty()) return word;
        text.remove_prefix(word.size());
    }
}

}  // namespace

DiskStatistics::DiskStatistics(const std::filesystem::path& folder) :
    counts(openAttribute(folder / "stat")),
    isCounting(openAttribute(folder / "queue/iostats")) {}

SystemResult DiskStatistics::bytesWritten() const {
    constexpr size_t sectorsWritten = 6;  // Documentation/block/stat.rst
    constexpr uint64_t bytesPerSector = 512;
    Buffer buffer;
    if (read(isCounting, buffer).starts_with('0')) return {.error = ENOTSUP};
    const auto word = wordAt(sectorsWritten, read(counts, buffer));
    uint64_t sectors = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), sectors);
    if (error != std::errc()) return {.error = ENODEV};
    return {.value = sectors * bytesPerSector};
}

}  // namespace tessel
