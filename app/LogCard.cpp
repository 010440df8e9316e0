#include "app/LogCard.h"

#include <QHBoxLayout>
#include <QPainter>

#include "app/StatusTexts.h"
#include "views/controls/SymbolLabel.h"

namespace tessel {

namespace {

/// The rounded outline around the log.
class LogFrame : public QWidget {
  public:
    explicit LogFrame(QWidget* framed) {
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(inset, inset, inset, inset);
        column->addWidget(framed);
        setMinimumHeight(180);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(currentColors().textBackground);
        painter.setPen(withOpacity(currentColors().primary, 0.07));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    }

  private:
    static constexpr int radius = 11;
    static constexpr int inset = 4;  ///< keeps the square corners of the text inside the round ones
};

constexpr std::chrono::seconds interactionPauseDuration{5};

}  // namespace

LogCard::LogCard(TesselViewModel& viewModel) :
    viewModel(viewModel),
    stopButton(new Button({.text = "Stop",
                           .symbol = "stop.circle.fill",
                           .look = Button::Look::destructiveProminent,
                           .size = Button::Size::small})),
    clearButton(new Button({.text = "Clear",
                            .symbol = "trash",
                            .look = Button::Look::destructive,
                            .size = Button::Size::small})),
    status(new TextLabel({}, {.font = FontRole::caption, .weight = QFont::DemiBold})),
    entries(new TextLabel({}, {.font = FontRole::smallestCaption, .tone = Tone::secondary})),
    logView(new OperationLogView(interactionPauseDuration)) {
    connect(stopButton, &Button::clicked, this, [this] { this->viewModel.requestStop(); });
    connect(clearButton, &Button::clicked, this, [this] { this->viewModel.clearLog(); });

    stopButton->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    auto* heading = new QHBoxLayout;
    heading->setSpacing(spacing::small);
    heading->addWidget(new SymbolLabel("text.alignleft", "Operation Log",
                                       {.font = FontRole::headline, .weight = QFont::Bold}),
                       1);
    heading->addWidget(stopButton);
    heading->addWidget(clearButton);
    auto* line = new QHBoxLayout;
    line->addWidget(status, 1);
    line->addWidget(entries);
    content().addLayout(heading);
    content().addLayout(line);
    content().addWidget(new LogFrame(logView), 1);
}

void LogCard::render() {
    renderStopButton();
    clearButton->setEnabled(!viewModel.isBusy() && !viewModel.logLines().empty());
    status->setText(viewModel.isCancellationRequested() ? "Stopping Operation"
                                                        : statusTitle(viewModel.state()));
    entries->setText(QString::number(viewModel.logLines().size()) + " entries");
    logView->setLog(viewModel.logText(), viewModel.logLines().size());
}

void LogCard::renderStopButton() {
    const bool isStopping = viewModel.isCancellationRequested();
    const bool isWriting = viewModel.state().kind == TesselOperationState::Case::writingImage;
    stopButton->setVisible(viewModel.hasWriteTask() && isWriting);
    stopButton->setEnabled(viewModel.canRequestStop());
    stopButton->setText(isStopping ? "Stopping Operation" : "Stop");
    stopButton->setToolTip(
        isStopping ? "The operation is stopping and the SD card will be ejected when possible."
        : viewModel.canRequestStop() ? "Stop at the next safe checkpoint and eject the SD card when possible."
                                     : "The operation is ejecting and can no longer be interrupted safely.");
}

}  // namespace tessel
