#pragma once

#include <QString>
#include <QWidget>
#include <filesystem>

namespace tessel {

/// Saves pictures of the window and of what stands above it, light and dark, as wide as it likes to be and as
/// small as it can be.
class Pictures {
  public:
    /// The folder is made when it is missing; earlier pictures in it are replaced.
    Pictures(QWidget& window, std::filesystem::path folder);

    void take(const QString& stage) const;

  private:
    void save(const QString& name) const;

    QWidget& window;
    std::filesystem::path folder;
};

}  // namespace tessel
