#include "rehearsal/window/Commentary.h"

#include <cstdio>

namespace tessel {

void Commentary::tell() {
    constexpr std::chrono::seconds longestSilence{10};
    const auto now = std::chrono::steady_clock::now();
    const auto& lines = viewModel.log().logLines();
    if (toldLines < lines.size()) {
        lastTold = now;
        while (toldLines < lines.size())
            std::printf("%s\n", lines[toldLines++].c_str());
    } else if (viewModel.write().exists() && now - lastTold >= longestSilence) {
        lastTold = now;
        std::printf("           %s %s\n", viewModel.progress().writeProgressDetail.c_str(),
                    viewModel.progress().writeTransferRate.c_str());
    }
    std::fflush(stdout);  // it may go to a file or through a pipe
}

}  // namespace tessel
