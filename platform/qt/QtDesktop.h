#pragma once

#include <QPointer>
#include <QUrl>
#include <QWidget>
#include <functional>

#include "platform/Desktop.h"

namespace tessel {

/// Returns the file that a URL names, byte for byte. A name that is not UTF-8 comes from most dialogs with
/// replacement characters; the file in the same folder that is shown by this name is then the one.
[[nodiscard]] std::filesystem::path localPath(const QUrl& url);

/// Provides the desktop's services by means of Qt and of the services that desktops run.
class QtDesktop : public Desktop {
  public:
    /// Shows an alert. The presenter decides what it looks like.
    using AlertPresenter = std::function<void(const Alert& alert)>;

    explicit QtDesktop(AlertPresenter presenter) : presenter(std::move(presenter)) {}

    /// Sets the window that panels and alerts belong to.
    void setWindow(QWidget* mainWindow) { window = mainWindow; }

    /// Makes panels open at this file instead of in the user's Desktop folder.
    void setSuggestedFile(const std::filesystem::path& file) { suggestedFile = file; }

    Task<std::optional<std::filesystem::path>> runOpenPanel(OpenPanel panel) override;
    void presentAlert(const Alert& alert) override { presenter(alert); }
    void beep() override;
    void requestUserAttention(const Notification& notification) override;
    std::unique_ptr<TemporaryActivity> beginActivity(const std::string& reason) override;

  private:
    AlertPresenter presenter;
    QPointer<QWidget> window;
    std::filesystem::path suggestedFile;
};

}  // namespace tessel
