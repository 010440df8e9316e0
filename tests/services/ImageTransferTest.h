#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <stop_token>
#include <string_view>
#include <vector>

#include "model/TesselError.h"
#include "services/ImageTransfer.h"
#include "tests/support/MemoryDevice.h"
#include "tests/support/OpenResources.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel {

/// An image in a file and a card in memory.
class ImageTransferTest : public LeavesNothingOpen {
  protected:
    ImageTransferTest() { mayCloseLate = true; }

    static constexpr size_t MiB = size_t{1} << 20;
    static constexpr size_t chunk = 8 * MiB;
    static constexpr std::byte untouched{0xEE};

    void useImage(size_t size, size_t cardSize = 0) {
        image = patternedBytes(size);
        medium.bytes.assign(cardSize == 0 ? 32 * MiB : cardSize, untouched);
        imageURL = folder.write("os.img", {reinterpret_cast<const char*>(image.data()), image.size()});
    }

    /// Runs a transfer to its end. The hook is called with each report and may stop it.
    std::exception_ptr transfer(bool verify = true) {
        const AuthorizedRawDiskHandle handle{.device = std::make_unique<MemoryDevice>(medium),
                                             .blockSize = medium.blockSize,
                                             .blockCount = medium.bytes.size() / medium.blockSize};
        stop = {};
        const auto record = [this](const ImageWriteProgress& report) {
            reports.push_back(report);
            if (onReport) onReport(report);
        };
        try {
            writeImage({imageURL, image.size(), handle, verify}, stop.get_token(), record);
            return nullptr;
        } catch (...) {
            return std::current_exception();
        }
    }

    std::string failure(bool verify = true) { return localizedDescription(transfer(verify)); }

    void expectCardHoldsImage() const {
        const auto padded = (image.size() + medium.blockSize - 1) / medium.blockSize * medium.blockSize;
        const std::span held(medium.bytes);
        const auto isFilledWith = [](std::byte value) {
            return [value](std::byte byte) { return byte == value; };
        };
        EXPECT_TRUE(std::ranges::equal(image, held.first(image.size())));
        EXPECT_TRUE(
            std::ranges::all_of(held.first(padded).subspan(image.size()), isFilledWith(std::byte{0})));
        EXPECT_TRUE(std::ranges::all_of(held.subspan(padded), isFilledWith(untouched)));
    }

    void patchImageFile(long offset, std::string_view bytes) const {
        std::fstream(imageURL, std::ios::in | std::ios::out | std::ios::binary).seekp(offset) << bytes;
    }

    TemporaryFolder folder;
    std::filesystem::path imageURL;
    std::vector<std::byte> image;
    Medium medium;
    std::vector<ImageWriteProgress> reports;
    std::function<void(const ImageWriteProgress&)> onReport;
    std::stop_source stop;
};

}  // namespace tessel
