#include "rehearsal/window/ReaderWatch.h"

#include <QFileSystemWatcher>
#include <utility>

#include "utilities/simulated/ReaderFolder.h"

namespace tessel {

namespace {

class ReaderWatch : public TemporaryActivity {
  public:
    ReaderWatch(const std::filesystem::path& folder, std::function<void()> onChange) :
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
        if (std::exchange(disks, reader.disks()) != disks) onChange();
    }

    ReaderFolder reader;
    std::function<void()> onChange;
    std::vector<std::string> disks;
    QFileSystemWatcher watcher;
};

}  // namespace

std::unique_ptr<TemporaryActivity> watchReader(const std::filesystem::path& readerFolder,
                                               std::function<void()> onChange) {
    return std::make_unique<ReaderWatch>(readerFolder, std::move(onChange));
}

}  // namespace tessel
