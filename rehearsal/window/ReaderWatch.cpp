#include "rehearsal/window/ReaderWatch.h"

#include <QFileSystemWatcher>
#include <algorithm>
#include <iterator>
#include <utility>

#include "utilities/simulated/ReaderFolder.h"

namespace tessel {

namespace {

class ReaderWatch : public TemporaryActivity {
  public:
    ReaderWatch(const std::filesystem::path& folder, std::function<void(const DiskChange&)> onChange) :
        reader(folder),
        onChange(std::move(onChange)),
        disks(reader.disks()) {
        watcher.addPath(QString::fromStdString(folder.string()));
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            if (entry.is_directory()) watcher.addPath(QString::fromStdString(entry.path().string()));
        QObject::connect(&watcher, &QFileSystemWatcher::directoryChanged, &watcher, [this] { compare(); });
    }

  private:
    void compare() {
        const auto before = std::exchange(disks, reader.disks());
        report(before, disks, true);
        report(disks, before, false);
    }

    /// Reports the disks that are in one list and not in the other; both are sorted.
    void report(const std::vector<std::string>& some, const std::vector<std::string>& others, bool haveGone) {
        std::vector<std::string> different;
        std::ranges::set_difference(some, others, std::back_inserter(different));
        for (const auto& disk : different)
            onChange({.systemName = disk, .hasGone = haveGone});
    }

    ReaderFolder reader;
    std::function<void(const DiskChange&)> onChange;
    std::vector<std::string> disks;
    QFileSystemWatcher watcher;
};

}  // namespace

std::unique_ptr<TemporaryActivity> watchReader(const std::filesystem::path& readerFolder,
                                               std::function<void(const DiskChange&)> onChange) {
    return std::make_unique<ReaderWatch>(readerFolder, std::move(onChange));
}

}  // namespace tessel
