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

#include "app/About.h"
#include "app/ConfirmationAlerts.h"
#include "app/HeaderBar.h"
#include "app/ImageCard.h"
#include "app/Keyboard.h"
#include "app/LogCard.h"
#include "app/ProgressCard.h"
#include "app/StatusTexts.h"
#include "app/TargetCard.h"
#include "app/WindowLayout.h"
#include "app/WriteCard.h"
#include "platform/qt/DesktopServices.h"
#include "platform/qt/QtDesktop.h"
#include "views/accessibility/Accessibility.h"
#include "views/controls/Card.h"
#include "views/controls/ScrollPane.h"

namespace tessel {

namespace {

QVBoxLayout* columnOfCards(QWidget* pane) {
    auto* column = new QVBoxLayout(pane);
    // The scroll bar stands in the right margin.
    column->setContentsMargins(spacing::page, spacing::page, spacing::page - ScrollBar::thickness,
                               spacing::page);
    column->setSpacing(spacing::card);
    return column;
}

/// Returns whether the drag carries exactly one file, which is on this computer.
bool isOneLocalFile(const QMimeData& dragged) {
    const auto urls = dragged.urls();
    return urls.size() == 1 && urls.front().isLocalFile() && urls.front().host().isEmpty() &&
           urls.front().path().startsWith('/');
}

}  // namespace

ContentView::ContentView(std::shared_ptr<TesselViewModel> model) :
    viewModel(std::move(model)),
    header(new HeaderBar(*viewModel)),
    imageCard(new ImageCard(*viewModel)),
    targetCard(new TargetCard(*viewModel)),
    writeCard(new WriteCard(*viewModel, [this] { showWriteConfirmation(); })),
    progressCard(new ProgressCard(*viewModel)),
    logCard(new LogCard(*viewModel)),
    focusMemory(*this) {
    presentToScreenReadersAs<ContentView, QAccessible::Window>();
    setAcceptDrops(true);
    new PressGuard(this);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(header);
    column->addWidget(new Divider);
    column->addWidget(new Panes(makeLeftCards(), makeRightCards()), 1);
    followScreen(screen());
    followApplicationFont(*this, [this] { fitInto(room); });
    passOnApplicationFont(*this);

    addClosingKeys(*this);
    connect(new QShortcut(keyFor(QKeySequence::HelpContents, Qt::Key_F1), this), &QShortcut::activated, this,
            [this] { showManual(); });

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
    column->addStretch(1);  // takes all the spare height, which headings would take, too
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
    fitInto(WindowSizes::Room::on(*screen));
    disconnect(screenChanges);
    screenChanges = connect(screen, &QScreen::availableGeometryChanged, this,
                            [this, screen] { fitInto(WindowSizes::Room::on(*screen)); });
}

void ContentView::fitInto(const WindowSizes::Room& newRoom) {
    room = newRoom;
    const auto sizes = WindowSizes::fitting(room);
    setMinimumSize(sizes.minimum);
    const bool hasOutgrownIt = size().boundedTo(sizes.largest) != size() && !isMaximized() && !isFullScreen();
    if (!isVisible() || hasOutgrownIt) resize(sizes.usual);
}

void ContentView::addClosingKeys(QWidget& to) {
    auto* closingKeys = new QShortcut(&to);
    closingKeys->setKeys({keyFor(QKeySequence::Close, Qt::CTRL | Qt::Key_W),
                          keyFor(QKeySequence::Quit, Qt::CTRL | Qt::Key_Q)});
    connect(closingKeys, &QShortcut::activated, this, &ContentView::close);
}

AlertDialog* ContentView::present(const AlertDialog::Fields& alert) {
    auto* dialog = new AlertDialog(alert, this);
    addClosingKeys(*dialog);
    dialog->open();
    return dialog;
}

void ContentView::scheduleRender() {
    if (isRenderScheduled) return;
    isRenderScheduled = true;
    QMetaObject::invokeMethod(this, [this] { render(); }, Qt::QueuedConnection);
}

void ContentView::render() {
    isRenderScheduled = false;
    renderTitle();
    auto* focused = focusWidget();
    renderCards();
    focusMemory.settle(focused);
    reconsiderStopQuestion();
    if (!viewModel->write().exists()) closeIfWanted();
}

/// Updates the dock, too, but only by what can be seen there: every whole per cent.
void ContentView::renderTitle() {
    const auto title = liveWindowTitle(*viewModel);
    if (title == windowTitle()) return;
    setWindowTitle(title);
    const bool isWriting = viewModel->write().exists();
    showDockProgress(isWriting ? std::optional(viewModel->progress().writeOperationProgress) : std::nullopt);
}

void ContentView::renderCards() const {
    const QString note = closing != Closing::no && viewModel->write().exists() ? closingNote : "";
    header->render(note);
    imageCard->render();
    targetCard->followDisks();
    targetCard->render();
    writeCard->render();
    progressCard->render(note);
    logCard->render();
}

void ContentView::closeIfWanted() {
    if (closing == Closing::no) return;
    if (closing == Closing::afterLastWords) {
        if (viewModel->write().hasFailed()) {
            closing = Closing::no;
            return;
        }
        for (auto* dialog : findChildren<QDialog*>()) {
            if (!dialog->isVisible()) continue;
            connect(dialog, &QDialog::finished, this, &QWidget::close, Qt::QueuedConnection);
            return;
        }
    }
    close();
}

void ContentView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    connect(windowHandle(), &QWindow::screenChanged, this, &ContentView::followScreen, Qt::UniqueConnection);
    if (!viewModel->didPerformInitialScan()) viewModel->refreshDisks();
}

void ContentView::showWriteConfirmation() {
    const auto message = confirmationMessage(*viewModel);
    const auto writeWhatWasConfirmed = [this, message] {
        if (closing != Closing::no) return;
        if (confirmationMessage(*viewModel) == message && !viewModel->isBusy()) {
            viewModel->startWrite();
        } else {
            showWriteConfirmation();
        }
    };
    present(confirmationAlert(*viewModel, writeWhatWasConfirmed));
}

void ContentView::showManual() {
    const QString failure = openManual();
    if (failure.isEmpty()) return;
    present({.symbol = "info.circle.fill",
             .symbolTone = Tone::blue,
             .symbolDescription = "Information",
             .message = "The Manual Can't Be Shown",
             .informativeText = failure,
             .actions = {{.title = "OK", .look = Button::Look::prominent}}});
}

void ContentView::closeEvent(QCloseEvent* event) {
    if (!viewModel->write().exists()) {
        // Each of these would keep the program running.
        viewModel->cancelImageChoice();
        for (auto* dialog : findChildren<QDialog*>())
            dialog->reject();
        return;
    }
    event->ignore();
    if (closing != Closing::no || isAskingToStop()) return;
    if (viewModel->write().canRequestStop()) {
        askToStop();
    } else {
        closing = Closing::afterLastWords;
        scheduleRender();
    }
}

void ContentView::askToStop() {
    askedQuestion = stopQuestion(*viewModel);
    const auto stopAndQuit = [this] {
        closing = Closing::afterLastWords;
        viewModel->requestStop();
        scheduleRender();
    };
    shownStopAlert = present(stopAlert(askedQuestion, stopAndQuit));
}

/// An answered question exists a little longer than it can be seen.
bool ContentView::isAskingToStop() const {
    return shownStopAlert && shownStopAlert->isVisible();
}

/// Asks anew once the write has come to where the answer means something else, and takes the question back
/// once there is nothing to stop any more.
void ContentView::reconsiderStopQuestion() {
    if (!isAskingToStop()) return;
    const bool canStop = viewModel->write().canRequestStop();
    if (canStop && askedQuestion == stopQuestion(*viewModel)) return;
    shownStopAlert->close();
    if (canStop) askToStop();
}

void ContentView::closeWhenWriteEnds() {
    closing = Closing::atOnce;
    viewModel->requestStop();
    scheduleRender();
}

bool ContentView::takesDrops() const {
    return !viewModel->isBusy() && !QApplication::activeModalWidget();
}

void ContentView::dragEnterEvent(QDragEnterEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(takesDrops() && isOneLocalFile(*event->mimeData()));
    imageCard->setHighlighted(event->isAccepted());
}

void ContentView::dragLeaveEvent(QDragLeaveEvent*) {
    imageCard->setHighlighted(false);
}

void ContentView::dropEvent(QDropEvent* event) {
    imageCard->setHighlighted(false);
    if (!takesDrops() || !isOneLocalFile(*event->mimeData())) return;
    viewModel->chooseImage(localPath(event->mimeData()->urls().front()));
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void ContentView::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), currentColors().underPageBackground);
}

}  // namespace tessel
