#include <chrono>
#include <cstring>
#include <fstream>
#include <ostream>
#include <set>
#include <thread>

#include "rehearsal/LoopDevice.h"
#include "tests/faults/SystemCallFaults.h"
#include "tests/viewmodel/ViewModelTest.h"

namespace tessel {

namespace {

/// One thing that goes wrong in a write, and how the write must end.
struct Row {
    std::string call;   ///< "diskutil COMMAND", "authopen", or a system call of this program
    std::string when;   ///< the number of the call, with "+" if all later ones go wrong as well
    std::string fault;  ///< the name of an error, or what happens instead
    std::string card;   ///< "untouched", "ejected", or "inside" after an attempt to eject it
    std::string ending;

    bool isOfUtility() const { return call.starts_with("diskutil ") || call == "authopen"; }
    bool persists() const { return when.ends_with('+'); }
    bool isOfBlockDevice() const {
        static const std::set<std::string> calls = {"block-size", "size", "sequence-number",
                                                    "direct-access card", "flock"};
        return calls.contains(call);
    }

    friend std::ostream& operator<<(std::ostream& stream, const Row& row) {
        return stream << row.call << " | " << row.when << " | " << row.fault;
    }
};

constexpr std::string_view stoppedAt = "never answers, stop at ";
constexpr std::string_view stoppedLater = "never answers, stop a second after ";

struct Table {
    std::vector<Row> rows;
    std::map<std::string, std::string> commands;  ///< lines of shell, in which `$real` is the utility
};

int errorNumber(const std::string& name) {
    for (int number = 1; number < 200; ++number) {
        const char* known = strerrorname_np(number);
        if (known && name == known) return number;
    }
    return 0;
}

std::string replaced(std::string text, const std::string& word, const std::string& replacement) {
    for (size_t found = text.find(word); found != std::string::npos; found = text.find(word))
        text.replace(found, word.size(), replacement);
    return text;
}

std::vector<std::string> split(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    size_t begin = 0;
    for (size_t end = 0; end != std::string::npos; begin = end + separator.size()) {
        end = text.find(separator, begin);
        parts.push_back(trimmed(text.substr(begin, end - begin)));
    }
    return parts;
}

/// Returns each call of a column such as "1, 2+" or "1-3".
std::vector<std::string> callsIn(const std::string& column) {
    const auto range = column.find('-');
    if (range == std::string::npos) return split(column, ", ");
    std::vector<std::string> calls;
    for (int call = std::stoi(column); call <= std::stoi(column.substr(range + 1)); ++call)
        calls.push_back(std::to_string(call));
    return calls;
}

/// Returns the ending with the parts filled in that depend on the call and the fault.
std::string filledIn(const std::string& ending, const std::string& call, const std::string& fault) {
    const bool isSecondChunk = std::stoi(call) % 2 == 0;
    const auto text = replaced(ending, "OFFSET", isSecondChunk ? "8388608" : "0");
    const auto* reason = strerrordesc_np(errorNumber(fault));
    return reason ? replaced(text, "REASON", reason) : text;
}

Table readTable() {
    Table read;
    std::ifstream table(TESSEL_FAULT_TABLE);
    for (std::string line; std::getline(table, line);) {
        if (line.empty() || line.starts_with('#')) continue;
        if (const auto command = split(line, " => "); command.size() == 2) {
            read.commands[command[0]] = command[1];
            continue;
        }
        const auto columns = split(line, " | ");
        for (const auto& call : callsIn(columns.at(1)))
            for (const auto& fault : split(columns.at(2), " / "))
                read.rows.push_back(
                    {columns[0], call, fault, columns.at(3), filledIn(columns.at(4), call, fault)});
    }
    return read;
}

const Table& table() {
    static const Table read = readTable();
    return read;
}

/// Returns the first columns in words: "pread_image_1_EIO", "diskutil_info_2_on_fails".
std::string nameOf(const testing::TestParamInfo<Row>& test) {
    const auto& row = test.param;
    std::string name;
    for (const char character : row.call + ' ' + replaced(row.when, "+", " on") + ' ' + row.fault) {
        if (isalnum(static_cast<unsigned char>(character))) {
            name += character;
        } else if (!name.ends_with('_')) {
            name += '_';
        }
    }
    return name.substr(0, name.find_last_not_of('_') + 1);
}

/// Writes an image to a card while something goes wrong.
class WriteFaultTests : public ViewModelTest, public testing::WithParamInterface<Row> {
  protected:
    WriteFaultTests() : ViewModelTest(SimulatedDisk::Medium::card) {
        before = openDescriptors();  // with the loop device that is the card
    }

    static std::string commandsFor(const std::string& fault) {
        const auto& commands = table().commands;
        if (const auto known = commands.find(fault); known != commands.end()) return known->second;
        if (fault.starts_with("says ")) return "echo '" + fault.substr(5) + "' >&2; exit 1";
        return "exec '" TESSEL_ROGUE_AUTHOPEN "' -stdoutpipe -o 2 '" + fault + "'";
    }

    /// Makes a utility go wrong in this call, and behave in all others.
    void plantInUtility(const Row& row) {
        const bool isDiskutil = row.call != "authopen";
        const auto command = isDiskutil ? row.call.substr(row.call.find(' ') + 1) : "-stdoutpipe";
        interpose("if [ $1 = " + command + " ]; then echo >> $0.calls\nif [ $(wc -l < $0.calls) -" +
                      (row.persists() ? "ge " : "eq ") + std::to_string(std::stoi(row.when)) + " ]; then\n" +
                      commandsFor(replaced(row.fault, "CARD", reader.mediumPath("disk4"))) +
                      "\nfi\nfi\nexec $real \"$@\"",
                  isDiskutil ? "diskutil" : "authopen");
    }

    /// Returns the file with the content of the card, past the caches of the block device.
    std::filesystem::path cardFile() const {
        const auto medium = reader.mediumPath("disk4");
        const std::filesystem::path file = medium.string() + ".img";
        return std::filesystem::exists(file) ? file : medium;
    }

    std::string whereTheCardIs(const Row& row) {
        const auto disks = reader.disks();
        if (std::ranges::find(disks, "disk4") == disks.end()) return "ejected";
        const bool failedToEject = row.call == "diskutil eject";
        return failedToEject || takeCommands().ends_with("eject") ? "inside" : "untouched";
    }

    /// Returns the thread of a user who waits for a second before they stop a write that has frozen.
    std::thread stopLater(SystemCallFaults& faults) {
        return std::thread([this, &faults] {
            faults.awaitShowing();
            std::this_thread::sleep_for(std::chrono::seconds(1));
            loop->post([this] { viewModel->requestStop(); });
        });
    }

    std::string ending() const {
        return viewModel->state().isSuccessfulCompletion() ? "ok" : viewModel->progress().writeProgressDetail;
    }

    /// Returns whether every child was reaped. One that could not be watched is reaped by a thread of its
    /// own.
    static bool hasReapedEveryChild() {
        siginfo_t child{};
        for (int attempt = 0; attempt < 500; ++attempt) {
            if (waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) < 0) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }

    void expectNothingLeft() {
        EXPECT_TRUE(hasReapedEveryChild());
        EXPECT_THAT(desktop.events, testing::Contains("end")) << "the computer may sleep again";
        EXPECT_FALSE(viewModel->isBusy());
    }

    /// Expects a success only if the card holds the image, and no mention of one otherwise.
    void expectTruth() {
        const auto lines = takeLog();
        const auto log = joined(lines, "\n");
        if (viewModel->state().isSuccessfulCompletion()) {
            std::string written(imageContent.size(), '\0');
            std::ifstream(cardFile(), std::ios::binary)
                .read(written.data(), static_cast<std::streamsize>(written.size()));
            EXPECT_TRUE(written == imageContent);
        } else {
            EXPECT_EQ(log.find("The disk image was written"), std::string::npos);
            EXPECT_EQ(stateText().find("completed"), std::string::npos);
            EXPECT_EQ(log.find("safe to"), std::string::npos);
            expectFailureIsTold(lines);
        }
    }

    /// Expects the failure in the state, in the title by the phase that was reached, in a notification, and
    /// once in the log.
    void expectFailureIsTold(const Messages& log) {
        static constexpr const char* titles[] = {"Preparing SD Card", "Authorizing Raw Device",
                                                 "Writing Image",     "Synchronizing Media",
                                                 "Verifying Image",   "Ejecting SD Card"};
        if (stateText() == "warning: Operation cancelled") return;
        std::string title = "Image Write";
        for (size_t phase = 0; phase < std::size(titles); ++phase)
            if (std::ranges::count(log, phaseMessages[phase]) > 0) title = titles[phase];
        EXPECT_EQ(stateText(), "failed: Image write failed");
        EXPECT_EQ(viewModel->targets().selectedDiskID(), "disk4") << "to be tried again";
        EXPECT_EQ(viewModel->progress().writePhaseTitle, title + " Failed");
        EXPECT_EQ(desktop.lastNotification.title, title + " Failed");
        EXPECT_EQ(desktop.lastNotification.text, ending());
        EXPECT_EQ(std::ranges::count(log, "Error: " + ending()), 1);
    }
};

}  // namespace

TEST_P(WriteFaultTests, everyFaultEndsInItsSentence) {
    const auto& row = GetParam();
    if (row.isOfBlockDevice() && !LoopDevice::isAvailable()) GTEST_SKIP() << "needs loop devices";
    prepareWrite();
    SystemCallFaults faults(std::filesystem::canonical(reader.mediumPath("disk4")), image);
    faults.setHurried(row.fault == "hangs");
    if (row.isOfUtility()) {
        plantInUtility(row);
    } else {
        faults.plant({.call = row.call,
                      .occurrence = std::stoi(row.when),
                      .persists = row.persists(),
                      .error = errorNumber(row.fault),
                      .effect = row.fault.substr(0, row.fault.find(','))});
    }
    std::thread user;
    if (row.fault.starts_with(stoppedAt)) {
        when(row.fault.substr(stoppedAt.size()), [&] {
            faults.awaitShowing();
            viewModel->requestStop();
        });
    }
    if (row.fault.starts_with(stoppedLater))
        when(row.fault.substr(stoppedLater.size()), [&] { user = stopLater(faults); });
    write();
    if (user.joinable()) user.join();
    const bool hasShown = faults.remove();
    EXPECT_TRUE(hasShown || row.isOfUtility()) << "the call did not happen";
    EXPECT_EQ(whereTheCardIs(row), row.card);
    EXPECT_EQ(replaced(ending(), folder.path(), "FOLDER"), row.ending);
    expectNothingLeft();
    expectTruth();
}

INSTANTIATE_TEST_SUITE_P(Rows, WriteFaultTests, testing::ValuesIn(table().rows), nameOf);

}  // namespace tessel
