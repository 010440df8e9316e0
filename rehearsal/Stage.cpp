#include "rehearsal/Stage.h"

#include <cstdlib>
#include <fstream>
#include <random>
#include <span>
#include <stdexcept>
#include <vector>

#include "rehearsal/StandardMachine.h"

namespace tessel {

namespace fs = std::filesystem;

namespace {

constexpr size_t sampleSize = 256'000'001;

fs::path makeFolder() {
    auto name = (fs::temp_directory_path() / "velmora-tessel-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("No folder could be made for the rehearsal.");
    return name;
}

}  // namespace

Stage::Stage() : folder(makeFolder()), simulatedReader(folder / "reader", TESSEL_SIMULATED_PROGRAMS) {
    addStandardMachine(simulatedReader);
}

Stage::~Stage() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

fs::path Stage::makeSampleImage() const {
    const auto path = folder / "sample.img";
    std::ofstream image(path, std::ios::binary);
    std::mt19937_64 random;
    std::vector<uint64_t> block(1 << 17);
    const auto bytes = std::as_bytes(std::span(block));
    for (size_t written = 0; written < sampleSize; written += bytes.size()) {
        for (auto& word : block)
            word = random();
        image.write(reinterpret_cast<const char*>(bytes.data()),
                    static_cast<std::streamsize>(std::min(bytes.size(), sampleSize - written)));
    }
    if (!image.flush()) throw std::runtime_error("“" + path.string() + "” could not be written.");
    return path;
}

}  // namespace tessel
