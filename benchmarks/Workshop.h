#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/FileDescriptor.h"

namespace tessel::benchmark {

namespace fs = std::filesystem;

constexpr uint64_t MiB = uint64_t{1} << 20;

/// A folder below another one, which is removed with this object.
class Workshop {
  public:
    explicit Workshop(const fs::path& parent) :
        folder(parent / ("velmora-tessel-benchmark-" + std::to_string(getpid()))) {
        fs::create_directories(folder);
    }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;
    ~Workshop() { fs::remove_all(folder); }

    fs::path path(const std::string& name) const { return folder / name; }

    fs::path makeImage(const std::string& name, uint64_t size) const {
        std::ofstream image(path(name), std::ios::binary);
        std::mt19937_64 random(size);
        std::vector<uint64_t> block(MiB / sizeof(uint64_t));
        for (uint64_t written = 0; written < size; written += MiB) {
            std::ranges::generate(block, random);
            image.write(reinterpret_cast<const char*>(block.data()), MiB);
        }
        return path(name);
    }

    /// Makes a file whose blocks are all allocated, so that no contender has to wait for their allocation.
    fs::path makeMedium(const std::string& name, uint64_t size) const {
        const FileDescriptor file(open(path(name).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
        if (posix_fallocate(file.get(), 0, static_cast<off_t>(size)) != 0)
            throw std::runtime_error("no space left");
        return path(name);
    }

  private:
    fs::path folder;
};

}  // namespace tessel::benchmark
