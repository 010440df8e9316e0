#include "app/CommandLine.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace tessel {

namespace {

constexpr auto help =
    "Usage: velmora-tessel [--help | --version]\n"
    "\n"
    "Opens a window that writes a raw disk image (.img, .raw or .bin) onto an SD card,\n"
    "byte for byte, reads the card back to prove what it wrote, and ejects the card.\n"
    "\n"
    "  --help     prints this\n"
    "  --version  prints the version\n";

constexpr int misused = 2;

}  // namespace

std::optional<int> answerCommandLine(std::span<char* const> arguments) {
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--help") {
            std::fputs(help, stdout);
            return EXIT_SUCCESS;
        }
        if (argument == "--version") {
            std::puts("Velmora Tessel " TESSEL_VERSION);
            return EXIT_SUCCESS;
        }
        if (argument == "-session") {
            ++i;  // a session manager names the session that it restores, which is the toolkit's business
            continue;
        }
        std::fprintf(stderr, "velmora-tessel: “%s” is not understood; --help says what is.\n", arguments[i]);
        return misused;
    }
    return std::nullopt;
}

}  // namespace tessel
