#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>

#include "viewmodel/TesselViewModel.h"

class QSplitter;

namespace tessel {

class AlertDialog;
class HeaderBar;
class ImageCard;
class LogCard;
class ProgressCard;
class TargetCard;
class WriteCard;

/// The window. It shows what the view model publishes, once per turn of the event loop however much changed,
/// and turns every action of the user into one call of the view model. It outlives a running write: closing
/// it then asks for a stop and takes effect when the card is closed and ejected.
class ContentView : public QWidget {
  public:
    explicit ContentView(std::shared_ptr<TesselViewModel> viewModel);
    ~ContentView() override;

    /// Closes the window without asking, as soon as no write runs; a running one is asked to stop.
    void closeWhenWriteEnds();

  protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QWidget* makeLeftPane();
    QWidget* makeRightPane();
    void scheduleRender();
    void render();
    void askToWrite();
    void askToStop();
    void closeWithEverythingAbove();

    std::shared_ptr<TesselViewModel> viewModel;
    HeaderBar* header;
    ImageCard* imageCard;
    TargetCard* targetCard;
    WriteCard* writeCard;
    ProgressCard* progressCard;
    LogCard* logCard;
    QPointer<AlertDialog> stopQuestion;
    bool isRenderScheduled = false;
    bool closesWhenWriteEnds = false;
};

}  // namespace tessel
