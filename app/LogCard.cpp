#include "app/LogCard.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>

#include "app/StatusTexts.h"
#include "views/controls/FoldingRow.h"
#include "views/controls/Painting.h"
#include "views/controls/TextLabel.h"

namespace tessel {

namespace {

constexpr std::chrono::seconds interactionPauseDuration{5};

constexpr double frameRadius = 11;

/// Frames the log, and shows when it has the keyboard focus. The padding keeps the square corners of the text
/// inside the round ones of the frame.
class LogFrame : public Box {
  public:
    explicit LogFrame(OperationLogView* logView) :
        Box({.radius = frameRadius,
             .padding = 4,
             .fill = [](const Colors& colors) { return colors.textBackground; },
             .stroke = [](const Colors& colors) { return withOpacity(colors.primary, 0.07); }}),
        logView(logView) {
        followApplicationFont(*this, [this] { setMinimumHeight(scaledWithFont(180)); });
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
        content().addWidget(logView);
        logView->installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
        return false;
    }

    void paintEvent(QPaintEvent* event) override {
        Box::paintEvent(event);
        QPainter painter(this);
        if (showsKeyboardFocus(*logView)) paintFocusRing(painter, rect(), frameRadius);
    }

  private:
    OperationLogView* logView;
};

}  // namespace

LogCard::LogCard(TesselViewModel& viewModel) :
    Card("Operation Log"),
    viewModel(viewModel),
    stopButton(new Button({.text = "Stop",
                           .symbol = "stop.circle.fill",
                           .look = Button::Look::destructiveProminent,
                           .size = Button::Size::small})),
    clearButton(new Button({.text = "Clear",
                            .symbol = "trash",
                            .look = Button::Look::destructive,
                            .size = Button::Size::small})),
    status(new ElidedLabel({.font = FontRole::caption, .weight = QFont::DemiBold}, Qt::ElideRight)),
    entryCount(new TextLabel({}, {.font = FontRole::smallestCaption, .tone = Tone::secondary})),
    logView(new OperationLogView(interactionPauseDuration)) {
    connect(stopButton, &Button::clicked, this, [this] { this->viewModel.requestStop(); });
    connect(clearButton, &Button::clicked, this, [this] {
        if (clearButton->hasFocus()) logView->setFocus();  // the button is about to be disabled
        this->viewModel.clearLog();
    });

    stopButton->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    auto* title = new SymbolLabel("text.alignleft", "Operation Log",
                                  {.font = FontRole::headline, .weight = QFont::Bold});
    title->setWordWrap(false);
    auto* titleLine = new QHBoxLayout;
    titleLine->addWidget(title);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(spacing::small);
    buttons->addWidget(stopButton);
    buttons->addWidget(clearButton);
    auto* line = new QHBoxLayout;
    line->addWidget(status, 1);
    line->addWidget(entryCount);
    content().addLayout(new FoldingRow(titleLine, buttons,
                                       {.besideSpacing = spacing::small, .belowSpacing = spacing::small}));
    content().addLayout(line);
    content().addWidget(new LogFrame(logView), 1);
}

void LogCard::render() const {
    renderStopButton();
    clearButton->setEnabled(!viewModel.isBusy() && !viewModel.log().logLines().empty());
    status->setText(liveStatusTitle(viewModel));
    entryCount->setText(QString::number(viewModel.log().logLines().size()) + " entries");
    logView->setLog(viewModel.log().logText(), viewModel.log().logLines().size());
}

void LogCard::renderStopButton() const {
    const bool isStopping = viewModel.write().isCancellationRequested();
    const bool isWriting = viewModel.state().kind == TesselOperationState::Case::writingImage;
    stopButton->setVisible(viewModel.write().exists() && isWriting);
    stopButton->setEnabled(viewModel.write().canRequestStop());
    stopButton->setText(isStopping ? stoppingTitle : "Stop");
    stopButton->setToolTip(isStopping
                               ? "The operation is stopping and the SD card will be ejected when possible."
                           : viewModel.write().canRequestStop()
                               ? "Stop at the next safe checkpoint and eject the SD card when possible."
                               : "The operation is ejecting and can no longer be interrupted safely.");
}

}  // namespace tessel
