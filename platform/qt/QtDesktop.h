#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>

#include "platform/Desktop.h"

namespace tessel {

/// The desktop as Qt and the login service know it.
class QtDesktop : public Desktop {
  public:
    /// How an alert looks is the business of the one who shows it.
    using AlertPresenter = std::function<void(const Alert& alert, QWidget* window)>;

    explicit QtDesktop(AlertPresenter presenter) : presenter(std::move(presenter)) {}

    /// The window to which panels and alerts belong.
    void setWindow(QWidget* mainWindow) { window = mainWindow; }

    /// A file with which panels begin, in the place of the user's Desktop folder.
    void setSuggestedFile(const std::filesystem::path& file) { suggestedFile = file; }

    std::optional<std::filesystem::path> runOpenPanel(const OpenPanel& panel) override;
    void presentAlert(const Alert& alert) override { presenter(alert, window); }
    void beep() override;
    void requestUserAttention() override;
    std::unique_ptr<TemporaryActivity> beginActivity(const std::string& reason) override;

  private:
    AlertPresenter presenter;
    QPointer<QWidget> window;
    std::filesystem::path suggestedFile;
};

}  // namespace tessel
