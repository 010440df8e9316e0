#include "foundation/PropertyListGuard.h"

#include <algorithm>
#include <cstdint>

namespace tessel {

namespace {

constexpr size_t maximumBytes = size_t{16} << 20;
constexpr size_t maximumDepth = 64;
constexpr size_t maximumItems = 50'000;

constexpr std::string_view binaryHeader = "bplist00";

struct Fault {
    const char* text;
};
constexpr Fault malformed{"is malformed"};
constexpr Fault tooLarge{"is too large"};
constexpr Fault tooDeep{"is nested too deeply"};

/// Follows every reference of the binary encoding from the root, as the library will, but gives up when there
/// are too many.
class BinaryWalk {
  public:
    explicit BinaryWalk(std::string_view bytes) : bytes(bytes) {
        if (offsetTable > trailer || offsetSize == 0 || objectCount > (trailer - offsetTable) / offsetSize)
            throw malformed;
    }

    void walk() { visit(root, 1); }

  private:
    enum Kind : uint8_t { data = 0x4, text = 0x5, wideText = 0x6, list = 0xA, set = 0xC, dictionary = 0xD };

    static size_t trailerOf(std::string_view bytes) {
        constexpr size_t trailerSize = 32;
        if (bytes.size() < binaryHeader.size() + trailerSize) throw malformed;
        return bytes.size() - trailerSize;
    }

    /// Reads a big-endian number of 1 to 8 bytes.
    uint64_t number(size_t position, uint64_t size) const {
        if (size < 1 || size > 8 || position > bytes.size() || size > bytes.size() - position)
            throw malformed;
        uint64_t value = 0;
        for (const char byte : bytes.substr(position, size))
            value = value << 8 | static_cast<unsigned char>(byte);
        return value;
    }

    void visit(uint64_t index, size_t depth) {
        if (index >= objectCount) throw malformed;
        if (depth > maximumDepth) throw tooDeep;
        if (++items > maximumItems) throw tooLarge;

        size_t position = number(offsetTable + index * offsetSize, offsetSize);
        const uint64_t marker = number(position++, 1);
        const uint64_t kind = marker >> 4;
        uint64_t count = marker & 0xF;
        if (kind >= data && count == 0xF) {
            const uint64_t countSize = uint64_t{1} << (number(position++, 1) & 0xF);
            count = number(position, countSize);
            position += countSize;
        }
        if (count > bytes.size()) throw malformed;

        if (kind == list || kind == set) {
            visitReferences(position, count, depth);
        } else if (kind == dictionary) {
            visitReferences(position, 2 * count, depth);
        } else if (kind == data || kind == text || kind == wideText) {
            expandedBytes += count;
            if (expandedBytes > maximumBytes) throw tooLarge;
            if (kind != data) requireNoZeros(position, count, kind == wideText ? 2 : 1);
        }
    }

    void visitReferences(size_t position, uint64_t count, size_t depth) {
        for (uint64_t reference = 0; reference < count; ++reference)
            visit(number(position + reference * referenceSize, referenceSize), depth + 1);
    }

    /// Refuses zeros, since the library aborts the program when one ends a key early.
    void requireNoZeros(size_t position, uint64_t count, uint64_t characterSize) const {
        for (uint64_t character = 0; character < count; ++character)
            if (number(position + character * characterSize, characterSize) == 0) throw malformed;
    }

    std::string_view bytes;
    size_t trailer = trailerOf(bytes);
    uint64_t offsetSize = number(trailer + 6, 1);
    uint64_t referenceSize = number(trailer + 7, 1);
    uint64_t objectCount = number(trailer + 8, 8);
    uint64_t root = number(trailer + 16, 8);
    uint64_t offsetTable = number(trailer + 24, 8);
    size_t items = 0;
    size_t expandedBytes = 0;
};

/// Returns the text between the "<" and ">" of a tag. Refuses quoted angle brackets and embedded document
/// types: property lists don't have them, and the library would read them differently.
std::string_view tagAt(std::string_view xml, size_t start) {
    const size_t end = xml.find('>', start);
    if (end == std::string_view::npos) throw malformed;
    const std::string_view tag = xml.substr(start + 1, end - start - 1);
    const bool hasOpenQuote = std::ranges::count(tag, '"') % 2 != 0;
    const bool isOpenInstruction = tag.starts_with('?') && (tag.size() < 2 || !tag.ends_with('?'));
    if (hasOpenQuote || isOpenInstruction || tag.find_first_of("<[") != std::string_view::npos)
        throw malformed;
    return tag;
}

void checkXML(std::string_view xml) {
    // The library compares names as C strings, so a zero byte could hide the rest of a name.
    if (xml.find('\0') != std::string_view::npos) throw malformed;
    const auto after = [xml](std::string_view terminator, size_t from) {
        const size_t found = xml.find(terminator, from);
        if (found == std::string_view::npos) throw malformed;
        return found + terminator.size();
    };

    size_t depth = 0;
    size_t items = 0;
    for (size_t at = xml.find('<'); at != std::string_view::npos; at = xml.find('<', at)) {
        constexpr std::string_view comment = "<!--";
        constexpr std::string_view literal = "<![CDATA[";
        if (xml.substr(at).starts_with(comment)) {
            at = after("-->", at + comment.size());
        } else if (xml.substr(at).starts_with(literal)) {
            at = after("]]>", at + literal.size());
        } else {
            const std::string_view tag = tagAt(xml, at);
            at += tag.size() + 2;
            const std::string_view name = tag.substr(0, tag.find_first_of(" \t\r\n"));
            if ((name == "array" || name == "dict") && !tag.ends_with('/') && ++depth > maximumDepth)
                throw tooDeep;
            if ((name == "/array" || name == "/dict") && depth > 0) --depth;
            if (!name.starts_with('/') && ++items > maximumItems) throw tooLarge;
        }
    }
}

}  // namespace

bool isBinaryPropertyList(std::string_view bytes) {
    return bytes.starts_with(binaryHeader);
}

std::optional<std::string> propertyListFault(std::string_view bytes) {
    try {
        if (bytes.size() > maximumBytes) throw tooLarge;
        if (isBinaryPropertyList(bytes)) {
            BinaryWalk(bytes).walk();
        } else {
            checkXML(bytes);
        }
        return std::nullopt;
    } catch (const Fault& fault) {
        return fault.text;
    }
}

}  // namespace tessel
