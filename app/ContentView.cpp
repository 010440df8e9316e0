#include "app/ContentView.h"

#include <QCloseEvent>
#include <QDialog>
#include <QPainter>
#include <QScrollArea>
#include <QSplitter>
#include <QVBoxLayout>

#include "app/ConfirmationTexts.h"
#include "app/HeaderBar.h"
#include "app/ImageCard.h"
#include "app/LogCard.h"
#include "app/ProgressCard.h"
#include "app/StatusTexts.h"
#include "app/TargetCard.h"
#include "app/WriteCard.h"
#include "views/alerts/AlertDialog.h"
#include "views/controls/Divider.h"
#include "views/controls/ScrollBar.h"

namespace tessel {

namespace {

QVBoxLayout* paneLayout(QWidget* pane) {
    auto* column = new QVBoxLayout(pane);
    column->setContentsMargins(spacing::page, spacing::page, spacing::page, spacing::page);
    column->setSpacing(spacing::card);
    return column;
}

}  // namespace

ContentView::ContentView(std::shared_ptr<TesselViewModel> model) :
    viewModel(std::move(model)),
    header(new HeaderBar(*viewModel)),
    imageCard(new ImageCard(*viewModel)),
    targetCard(new TargetCard(*viewModel)),
    writeCard(new WriteCard(*viewModel, [this] { askToWrite(); })),
    progressCard(new ProgressCard(*viewModel)),
    logCard(new LogCard(*viewModel)) {
    setMinimumSize(1080, 720);
    resize(1180, 820);

    auto* panes = new QSplitter(Qt::Horizontal);
    panes->setChildrenCollapsible(false);
    panes->addWidget(makeLeftPane());
    panes->addWidget(makeRightPane());
    panes->setStretchFactor(0, 1);
    panes->setSizes({760, 410});

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(header);
    column->addWidget(new Divider);
    column->addWidget(panes, 1);

    viewModel->onChange = [this] { scheduleRender(); };
    render();
}

ContentView::~ContentView() {
    viewModel->onChange = nullptr;
}

QWidget* ContentView::makeLeftPane() {
    auto* cards = new QWidget;
    auto* column = paneLayout(cards);
    for (QWidget* card : std::initializer_list<QWidget*>{imageCard, targetCard, writeCard})
        column->addWidget(card);
    column->addStretch();

    auto* pane = new QScrollArea;
    pane->setMinimumWidth(620);
    pane->setFrameShape(QFrame::NoFrame);
    pane->setFocusPolicy(Qt::NoFocus);  // keys that its cards ignore still scroll it
    pane->setVerticalScrollBar(new ScrollBar);
    pane->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pane->setWidgetResizable(true);
    pane->setWidget(cards);
    pane->viewport()->setAutoFillBackground(false);
    cards->setAutoFillBackground(false);
    return pane;
}

QWidget* ContentView::makeRightPane() {
    auto* pane = new QWidget;
    pane->setMinimumWidth(340);
    pane->setMaximumWidth(520);
    auto* column = paneLayout(pane);
    column->addWidget(progressCard);
    column->addWidget(logCard, 1);
    return pane;
}

void ContentView::scheduleRender() {
    if (isRenderScheduled) return;
    isRenderScheduled = true;
    QMetaObject::invokeMethod(this, [this] { render(); }, Qt::QueuedConnection);
}

void ContentView::render() {
    isRenderScheduled = false;
    setWindowTitle(liveWindowTitle(*viewModel));
    header->render();
    imageCard->render();
    targetCard->followDisks();
    targetCard->render();
    writeCard->render();
    progressCard->render();
    logCard->render();
    reconsiderStopQuestion();
    if (!viewModel->hasWriteTask()) closeIfWanted();
}

void ContentView::closeIfWanted() {
    if (closing == Closing::no) return;
    if (closing == Closing::atOnce) return closeWithEverythingAbove();
    if (viewModel->state().kind == TesselOperationState::Case::failed) {
        closing = Closing::no;
        return;
    }
    for (auto* dialog : findChildren<QDialog*>()) {
        if (!dialog->isVisible()) continue;
        connect(dialog, &QDialog::finished, this, &QWidget::close, Qt::QueuedConnection);
        return;
    }
    close();
}

/// Closes the panels and alerts too, since one that stayed open would keep the program running.
void ContentView::closeWithEverythingAbove() {
    for (auto* dialog : findChildren<QDialog*>())
        dialog->reject();
    close();
}

void ContentView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!viewModel->didPerformInitialScan()) viewModel->refreshDisks();
}

void ContentView::askToWrite() {
    const auto message = confirmationMessage(*viewModel);
    const auto writeWhatWasConfirmed = [this, message] {
        if (closing != Closing::no) return;
        if (confirmationMessage(*viewModel) == message) {
            viewModel->startWrite();
        } else {
            askToWrite();
        }
    };
    auto* alert =
        new AlertDialog({.symbol = "exclamationmark.triangle.fill",
                         .symbolTone = Tone::orange,
                         .symbolDescription = "Warning",
                         .message = "Confirm Destructive Write",
                         .informativeText = QString::fromStdString(message),
                         .actions = {{.title = "Cancel"},
                                     {.title = QString::fromStdString(confirmationButtonTitle(*viewModel)),
                                      .look = Button::Look::destructiveProminent,
                                      .act = writeWhatWasConfirmed}}},
                        this);
    alert->open();
}

void ContentView::closeEvent(QCloseEvent* event) {
    if (!viewModel->hasWriteTask()) return event->accept();
    event->ignore();
    if (closing != Closing::no || isAskingToStop()) return;
    if (viewModel->canRequestStop()) {
        askToStop();
    } else {
        closing = Closing::afterLastWords;
    }
}

void ContentView::askToStop() {
    askedQuestion = stopQuestion(*viewModel);
    const auto stopAndQuit = [this] {
        closing = Closing::afterLastWords;
        viewModel->requestStop();
        scheduleRender();
    };
    stopAlert =
        new AlertDialog({.symbol = "exclamationmark.triangle.fill",
                         .symbolTone = Tone::orange,
                         .symbolDescription = "Warning",
                         .message = "A Write Is Running",
                         .informativeText = QString::fromStdString(askedQuestion.message),
                         .actions = {{.title = QString::fromStdString(askedQuestion.continueButtonTitle)},
                                     {.title = "Stop and Quit",
                                      .look = Button::Look::destructiveProminent,
                                      .act = stopAndQuit}}},
                        this);
    stopAlert->open();
}

/// An answered question exists a little longer than it can be seen.
bool ContentView::isAskingToStop() const {
    return stopAlert && stopAlert->isVisible();
}

/// Asks anew once the write has come to where the answer means something else, and takes the question back
/// once there is nothing to stop any more.
void ContentView::reconsiderStopQuestion() {
    if (!isAskingToStop()) return;
    const bool canStop = viewModel->canRequestStop();
    if (canStop && askedQuestion == stopQuestion(*viewModel)) return;
    stopAlert->close();
    if (canStop) askToStop();
}

void ContentView::closeWhenWriteEnds() {
    closing = Closing::atOnce;
    viewModel->requestStop();
    scheduleRender();
}

void ContentView::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), currentColors().underPageBackground);
}

}  // namespace tessel
