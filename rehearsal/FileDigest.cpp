#include "rehearsal/FileDigest.h"

#include <algorithm>
#include <fstream>
#include <span>
#include <stdexcept>
#include <vector>

#include "foundation/Sha256.h"

namespace tessel {

std::string digestOf(const std::filesystem::path& path, uint64_t length) {
    std::ifstream file(path, std::ios::binary);
    std::vector<char> buffer(1 << 20);
    Sha256 digest;
    while (length > 0) {
        const auto wanted = std::min<uint64_t>(length, buffer.size());
        if (!file.read(buffer.data(), static_cast<std::streamsize>(wanted))) {
            throw std::runtime_error("“" + path.string() + "” is too short or could not be read.");
        }
        digest.update(std::as_bytes(std::span(buffer).first(wanted)));
        length -= wanted;
    }
    return hexadecimal(digest.finish());
}

}  // namespace tessel
