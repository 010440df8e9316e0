#include "app/ContentView.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWindow>

#include "app/ConfirmationTexts.h"
#include "app/HeaderBar.h"
#include "app/ImageCard.h"
#include "app/Keys.h"
#include "app/LogCard.h"
#include "app/Panes.h"
#include "app/ProgressCard.h"
#include "app/TargetCard.h"
#include "app/WindowSizes.h"
#include "app/WriteCard.h"
#include "platform/Files.h"
#include "views/alerts/AlertDialog.h"
#include "views/controls/Divider.h"

namespace tessel {

namespace {

QVBoxLayout* columnOfCards(QWidget* pane) {
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
    logCard(new LogCard(*viewModel)),
    focusMemory(*this, logCard->stopControl()) {
    setWindowTitle("Velmora Tessel");
    setAcceptDrops(true);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(header);
    column->addWidget(new Divider);
    column->addWidget(new Panes(makeLeftCards(), makeRightCards()), 1);
    followScreen(screen());

    auto* closing = new QShortcut(this);
    closing->setKeys({keyFor(QKeySequence::Close, Qt::CTRL | Qt::Key_W),
                      keyFor(QKeySequence::Quit, Qt::CTRL | Qt::Key_Q)});
    connect(closing, &QShortcut::activated, this, &ContentView::close);

    viewModel->onChange = [this] { scheduleRender(); };
    render();
    imageCard->setFocus();
}

ContentView::~ContentView() {
    viewModel->onChange = nullptr;
}

QWidget* ContentView::makeLeftCards() {
    auto* cards = new QWidget;
    auto* column = columnOfCards(cards);
    for (QWidget* card : std::initializer_list<QWidget*>{imageCard, targetCard, writeCard})
        column->addWidget(card);
    column->addStretch();
    return cards;
}

QWidget* ContentView::makeRightCards() {
    auto* cards = new QWidget;
    auto* column = columnOfCards(cards);
    column->addWidget(progressCard);
    column->addWidget(logCard, 1);
    return cards;
}

void ContentView::followScreen(QScreen* screen) {
    fitInto(screen->availableSize());
    disconnect(screenChanges);
    screenChanges = connect(screen, &QScreen::availableGeometryChanged, this,
                            [this](const QRect& available) { fitInto(available.size()); });
}

void ContentView::fitInto(const QSize& room) {
    const auto sizes = WindowSizes::fitting(room);
    setMinimumSize(sizes.minimum);
    const bool hasOutgrownIt = size().boundedTo(room) != size() && !isMaximized() && !isFullScreen();
    if (!isVisible() || hasOutgrownIt) resize(sizes.usual);
}

void ContentView::scheduleRender() {
    if (isRenderScheduled) return;
    isRenderScheduled = true;
    QMetaObject::invokeMethod(this, [this] { render(); }, Qt::QueuedConnection);
}

void ContentView::render() {
    isRenderScheduled = false;
    auto* focused = focusWidget();
    renderCards();
    focusMemory.settle(focused, viewModel->isBusy());
    if (viewModel->hasWriteTask()) return;
    if (stopQuestion) stopQuestion->close();
    if (closesWhenWriteEnds) close();
}

void ContentView::renderCards() const {
    header->render();
    imageCard->render();
    targetCard->followDisks();
    targetCard->render();
    writeCard->render();
    progressCard->render();
    logCard->render();
}

void ContentView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    connect(windowHandle(), &QWindow::screenChanged, this, &ContentView::followScreen, Qt::UniqueConnection);
    if (!viewModel->didPerformInitialScan()) viewModel->refreshDisks();
}

void ContentView::askToWrite() {
    const auto message = confirmationMessage(*viewModel);
    const auto writeWhatWasConfirmed = [this, message] {
        if (closesWhenWriteEnds) return;
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
    if (viewModel->hasWriteTask()) {
        event->ignore();
        if (!closesWhenWriteEnds && !stopQuestion) askToStop();
        return;
    }
    // A panel or an alert that stayed open would keep the program running.
    for (auto* dialog : findChildren<QDialog*>())
        dialog->reject();
}

void ContentView::askToStop() {
    stopQuestion = new AlertDialog(
        {.symbol = "exclamationmark.triangle.fill",
         .symbolTone = Tone::orange,
         .symbolDescription = "Warning",
         .message = "A Write Is Running",
         .informativeText = "Closing the window stops the write at the next safe checkpoint. The SD card "
                            "will then hold incomplete data. Velmora Tessel quits once the card is closed "
                            "and ejected.",
         .actions = {{.title = "Continue Writing"},
                     {.title = "Stop and Quit",
                      .look = Button::Look::destructiveProminent,
                      .act = [this] { closeWhenWriteEnds(); }}}},
        this);
    stopQuestion->open();
}

void ContentView::closeWhenWriteEnds() {
    closesWhenWriteEnds = true;
    viewModel->requestStop();
    scheduleRender();
}

bool ContentView::takesDrops() const {
    return !viewModel->isBusy() && !QApplication::activeModalWidget();
}

void ContentView::dragEnterEvent(QDragEnterEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(takesDrops());
}

void ContentView::dropEvent(QDropEvent* event) {
    if (!takesDrops()) return;
    const auto files = event->mimeData()->urls();
    // No file has an empty name, so whatever else was dropped is refused as no image.
    const auto file = files.size() == 1 ? files.front().toLocalFile() : QString();
    viewModel->chooseImage(withLinksResolved(file.toStdString()));
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void ContentView::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), currentColors().underPageBackground);
}

}  // namespace tessel
