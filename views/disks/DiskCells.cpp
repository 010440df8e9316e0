#include "views/disks/DiskCells.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QRadioButton>

#include "model/DiskTexts.h"
#include "model/SDCardPolicy.h"
#include "views/accessibility/Accessibility.h"
#include "views/controls/Symbol.h"
#include "views/controls/TextLabel.h"

namespace tessel {

namespace {

constexpr int radioSymbolSize = 18;

/// Shows what it is told and never changes by itself: whether a disk is the target is decided elsewhere.
class TargetRadioButton : public QRadioButton {
  public:
    explicit TargetRadioButton(QWidget* parent) : QRadioButton(parent) {
        presentButtonToScreenReaders<TargetRadioButton, QAccessible::RadioButton>();
        setAttribute(Qt::WA_Hover);
        // The row takes the focus and presses this control with the space bar.
        setFocusPolicy(Qt::NoFocus);
    }

  protected:
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    void nextCheckState() override {}

    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setOpacity(isEnabled() ? 1 : 0.6);
        const Colors colors = currentColors();
        const QColor unselected = underMouse() && isEnabled() ? colors.green : colors.secondary;
        paintSymbol(painter, isChecked() ? "largecircle.fill.circle" : "circle", rect(),
                    scaledWithFont(radioSymbolSize), isChecked() ? colors.green : unselected);
    }
};

QString accessibilityText(const SDWholeDisk& disk, bool isProtected, bool isSelectedTarget) {
    const QString summary = QString::fromStdString(disk.displaySummary());
    if (isProtected) return "Protected disk " + summary;
    return isSelectedTarget ? "Selected SD-card target " + summary
                            : "Select " + summary + " as the SD-card target";
}

constexpr int mediaSymbolSize = 17;

}  // namespace

DiskTargetSelector::DiskTargetSelector(std::function<void()> selectAction) :
    radio(new TargetRadioButton(this)),
    lock(new SymbolView({.symbol = "lock.fill", .tone = Tone::secondary, .size = 14})) {
    lock->setParent(this);
    connect(radio, &QRadioButton::clicked, std::move(selectAction));
}

void DiskTargetSelector::display(const Fields& fields) {
    const auto reason = protectionText(fields.disk);
    radio->setVisible(!reason);
    lock->setVisible(reason.has_value());
    radio->setEnabled(!fields.isBusy);
    radio->setChecked(fields.isSelectedTarget);
    const QString label = accessibilityText(fields.disk, reason.has_value(), fields.isSelectedTarget);
    radio->setAccessibleName(label);
    lock->setAccessibleName(label);
    if (reason) {
        setToolTip(QString::fromStdString(*reason));
    } else {
        setToolTip(fields.isSelectedTarget ? "This SD card is the selected write target."
                                           : "Select this SD card as the write target.");
    }
}

void DiskTargetSelector::press() {
    if (!radio->isHidden()) radio->click();
}

QString DiskTargetSelector::accessibilityLabel() const {
    return radio->accessibleName();
}

void DiskTargetSelector::resizeEvent(QResizeEvent*) {
    radio->setGeometry(rect());
    lock->setGeometry(rect());
}

DiskMediaCell::DiskMediaCell() :
    symbol(new SymbolView({.symbol = {}, .size = mediaSymbolSize})),
    kind(new ElidedLabel({.font = FontRole::caption, .weight = QFont::DemiBold}, Qt::ElideRight)),
    connection(
        new ElidedLabel({.font = FontRole::smallestCaption, .tone = Tone::secondary}, Qt::ElideRight)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing::small);
    row->addWidget(symbol);
    row->addLayout(stackedTexts(kind, connection), 1);
}

void DiskMediaCell::display(const SDWholeDisk& disk) {
    symbol->display({.symbol = QString::fromStdString(mediaSymbol(disk)),
                     .tone = eligibilityFailureReason(disk) ? Tone::secondary : Tone::blue,
                     .size = mediaSymbolSize});
    kind->setText(QString::fromStdString(mediaKindText(disk)));
    connection->setText(QString::fromStdString(connectionText(disk)));
}

}  // namespace tessel
