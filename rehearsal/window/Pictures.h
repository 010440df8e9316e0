#pragma once

#include <QString>
#include <QWidget>
#include <filesystem>

namespace tessel {

/// Saves pictures of the window and of the dialogs above it, in light and dark colours, each at the window's
/// current size and at its smallest.
class Pictures {
  public:
    /// Creates the folder if it is missing. Pictures replace earlier ones of the same name.
    Pictures(QWidget& window, std::filesystem::path folder);

    void take(const QString& stage) const;

  private:
    void save(const QString& name) const;

    QWidget& window;
    std::filesystem::path folder;
};

}  // namespace tessel
