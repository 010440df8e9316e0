#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tessel {

/// A new folder that is removed, with everything in it, when this object is destroyed.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        auto name = (std::filesystem::temp_directory_path() / "tessel-test-XXXXXX").string();
        if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
        folder = name;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    const std::filesystem::path& path() const { return folder; }

    std::filesystem::path write(const std::string& name, std::string_view content) const {
        const auto file = folder / name;
        std::ofstream(file, std::ios::binary) << content;
        return file;
    }

    /// Writes a shell script that can be started as a program.
    std::filesystem::path writeScript(const std::string& name, std::string_view commands) const {
        const auto file = write(name, "#!/bin/sh\n" + std::string(commands) + "\n");
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
        return file;
    }

  private:
    std::filesystem::path folder;
};

inline std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace tessel
