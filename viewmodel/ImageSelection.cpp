#include "viewmodel/ImageSelection.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "foundation/Errors.h"
#include "foundation/Text.h"
#include "model/TesselError.h"
#include "platform/Files.h"
#include "platform/concurrency/Background.h"
#include "services/HelperThread.h"

namespace tessel {

namespace {

constexpr std::string_view allowedImageExtensions[] = {"img", "raw", "bin"};

bool hasAllowedExtension(const std::filesystem::path& url) {
    const auto extension = lowercased(url.extension().string());
    return std::ranges::any_of(allowedImageExtensions, [&extension](std::string_view allowed) {
        return extension == "." + std::string(allowed);
    });
}

SDImageFile inspect(const std::filesystem::path& url) {
    if (!hasAllowedExtension(url)) throw TesselError(TesselError::Case::invalidImage);
    const auto status = fileStatus(url);
    if (!status.isRegularFile || status.sizeBytes == 0)
        throw TesselError(TesselError::Case::imageUnavailable);
    if (const auto opened = ReadOnlyFile().open(url); !opened.isSuccess())
        throw posixError("The file “" + printable(url.string()) + "” could not be opened", opened.error);
    return {.url = url, .sizeBytes = status.sizeBytes};
}

}  // namespace

Task<SDImageFile> ImageSelection::inspectImage(std::filesystem::path url) {
    co_return co_await inBackground(interruptible([url] { return inspect(url); }));
}

Task<SDImageFile> ImageSelection::inspectLinkedImage(std::filesystem::path url) {
    co_return co_await inBackground(interruptible([url] { return inspect(withLinksResolved(url)); }));
}

Desktop::OpenPanel ImageSelection::openPanel() {
    return {.title = "Select a Raw Disk Image",
            .prompt = "Select Image",
            .message = "Choose an uncompressed raw disk image with an .img, .raw, or .bin extension.",
            .extensions = {std::begin(allowedImageExtensions), std::end(allowedImageExtensions)}};
}

}  // namespace tessel
