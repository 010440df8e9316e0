#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>

#include "app/ConfirmationAlerts.h"
#include "app/Keyboard.h"
#include "app/WindowLayout.h"
#include "viewmodel/TesselViewModel.h"
#include "views/alerts/AlertDialog.h"

namespace tessel {

class HeaderBar;
class ImageCard;
class LogCard;
class ProgressCard;
class TargetCard;
class WriteCard;

/// Shows what the view model publishes, once per turn of the event loop however much has changed, and turns
/// every action of the user into one call of the view model. The window outlives a running write: closing it
/// then asks whether to stop, as long as anything can be stopped, and takes effect once the card is closed
/// and ejected. If the write ends well nevertheless, it says so first; if it fails, the window stays.
class ContentView : public QWidget {
  public:
    explicit ContentView(std::shared_ptr<TesselViewModel> viewModel);
    ~ContentView() override;

    /// Makes the window fit on a screen with that much room. It does so by itself for the screen that it
    /// opens on, and whenever that screen changes.
    void fitInto(const WindowSizes::Room& newRoom);

    /// Closes the window without asking or saying anything as soon as no write is running. A running write is
    /// asked to stop.
    void closeWhenWriteEnds();

    /// Shows an alert above the window. The keys that close the window work in it, too.
    AlertDialog* present(const AlertDialog::Fields& alert);

  protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    QWidget* makeLeftCards();
    QWidget* makeRightCards();
    [[nodiscard]] bool takesDrops() const;
    void followScreen(QScreen* screen);
    void scheduleRender();
    void render();
    void renderTitle();
    void renderCards() const;
    void addClosingKeys(QWidget& to);
    void showWriteConfirmation();
    void showManual();
    void askToStop();
    [[nodiscard]] bool isAskingToStop() const;
    void reconsiderStopQuestion();
    void closeIfWanted();

    std::shared_ptr<TesselViewModel> viewModel;
    HeaderBar* header;
    ImageCard* imageCard;
    TargetCard* targetCard;
    WriteCard* writeCard;
    ProgressCard* progressCard;
    LogCard* logCard;
    FocusMemory focusMemory;
    WindowSizes::Room room;
    QMetaObject::Connection screenChanges;
    QPointer<AlertDialog> shownStopAlert;
    StopQuestion askedQuestion;
    bool isRenderScheduled = false;
    /// What happens once no write is running.
    enum class Closing { no, afterLastWords, atOnce } closing = Closing::no;
};

}  // namespace tessel
