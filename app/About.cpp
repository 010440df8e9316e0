#include "app/About.h"

#include <QDesktopServices>
#include <QString>
#include <QUrl>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "platform/InstalledFiles.h"

namespace tessel {

namespace {

constexpr auto help =
    "Usage: velmora-tessel [--help | --manual | --version]\n"
    "\n"
    "Opens a window that writes a raw disk image (.img, .raw or .bin) onto an SD card,\n"
    "byte for byte, reads the card back to prove what it wrote, and ejects the card.\n"
    "\n"
    "  --help     prints this\n"
    "  --manual   opens the manual, as F1 does in the window\n"
    "  --version  prints the version\n";

constexpr int misused = 2;

}  // namespace

CommandLineAnswer answerCommandLine(std::span<char* const> arguments) {
    CommandLineAnswer answer;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--help") {
            std::fputs(help, stdout);
            return {.exitStatus = EXIT_SUCCESS};
        }
        if (argument == "--version") {
            std::puts("Velmora Tessel " TESSEL_VERSION);
            return {.exitStatus = EXIT_SUCCESS};
        }
        if (argument == "--manual") {
            answer.wantsManual = true;
            continue;
        }
        if (argument == "-session") {
            ++i;  // a session manager names the session that it restores, which is the toolkit's business
            continue;
        }
        std::fprintf(stderr, "velmora-tessel: “%s” is not understood; --help says what is.\n", arguments[i]);
        return {.exitStatus = misused};
    }
    return answer;
}

QString aboutText() {
    return "Velmora Tessel " TESSEL_VERSION ". F1 opens the manual.";
}

QString openManual() {
    const auto manual = installedManual();
    const auto file = QString::fromStdString(manual.string());
    if (!std::filesystem::exists(manual))
        return "The manual is not installed. It would be the file " + file + ".";
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(file)))
        return "No program could be started to show the manual, which is the file " + file + ".";
    return {};
}

}  // namespace tessel
