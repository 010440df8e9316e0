#include "rehearsal/FileDigest.h"

#include <algorithm>
#include <fstream>
#include <span>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "foundation/Sha256.h"

namespace tessel {

namespace {

std::string hexadecimal(const Sha256::Digest& digest) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const auto byte : digest) {
        text += digits[std::to_integer<size_t>(byte >> 4)];
        text += digits[std::to_integer<size_t>(byte & std::byte{0x0f})];
    }
    return text;
}

}  // namespace

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
