#include "app/WriteCard.h"

#include <utility>

#include "foundation/ByteCount.h"
#include "model/DiskTexts.h"

namespace tessel {

namespace {

constexpr TextLook noteLook{.font = FontRole::smallestCaption, .tone = Tone::secondary};

/// Frames the sentence about the user's own risk in red.
Box* makeWarning() {
    auto* box = new Box({.radius = 10,
                         .padding = 10,
                         .fill = [](const Colors& colors) { return withOpacity(colors.red, 0.08); },
                         .stroke = [](const Colors& colors) { return withOpacity(colors.red, 0.22); }});
    box->content().addWidget(
        new SymbolLabel("exclamationmark.octagon.fill",
                        "Use at your own risk. The developer accepts no responsibility or liability for data "
                        "loss, device damage, corrupted media, or failed writes.",
                        {.font = FontRole::caption, .tone = Tone::red, .weight = QFont::DemiBold}));
    return box;
}

}  // namespace

WriteCard::WriteCard(TesselViewModel& viewModel, std::function<void()> showWriteConfirmation) :
    Card("Write Disk Image"),
    viewModel(viewModel),
    targetHint(
        new SymbolLabel("largecircle.fill.circle",
                        "Select a recognized SD card with the radio control in the first table column.",
                        {.font = FontRole::caption, .tone = Tone::secondary})),
    targetRow(new InfoRow("Target")),
    imageRow(new InfoRow("Image")),
    verifySwitch(new Switch("Verify the written image with SHA-256")),
    writeButton(new Button({.text = "Write Disk Image",
                            .symbol = "square.and.arrow.down.on.square.fill",
                            .look = Button::Look::destructiveProminent,
                            .size = Button::Size::large})),
    hint(new SymbolLabel("info.circle.fill", {}, {.font = FontRole::caption, .tone = Tone::orange})) {
    connect(verifySwitch, &Switch::toggled, this,
            [this](bool verify) { this->viewModel.setVerifyAfterWrite(verify); });
    writeButton->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(writeButton, &Button::clicked, this, std::move(showWriteConfirmation));
    buildContent();
}

void WriteCard::buildContent() {
    content().addWidget(
        new SymbolLabel("exclamationmark.triangle.fill", "Write Disk Image",
                        {.font = FontRole::headline, .tone = Tone::orange, .weight = QFont::Bold}));
    content().addWidget(
        wrappedLabel("The operation unmounts the selected SD card, replaces its existing data, writes the "
                     "raw image, optionally verifies it with SHA-256, and ejects the card.",
                     {.font = FontRole::caption, .tone = Tone::secondary}));
    content().addWidget(targetHint);
    content().addWidget(targetRow);
    content().addWidget(imageRow);
    content().addWidget(verifySwitch, 0, Qt::AlignLeft);
    content().addWidget(writeButton);
    content().addWidget(hint);
    content().addWidget(makeWarning());
    content().addWidget(new SymbolLabel("checkmark.shield.fill",
                                        "The confirmation dialog identifies the exact SD card and image "
                                        "before raw-device authorization begins.",
                                        noteLook));
    content().addWidget(
        new SymbolLabel("lock.shield.fill",
                        "The SD-card identity, media name, connection, capacity, writable state, physical "
                        "state, and whole-disk identity are checked again before and after the authorized "
                        "raw-device descriptor is opened. Internal drives, external SSDs, hard drives, NVMe "
                        "devices, disk images, and unrecognized removable media are rejected.",
                        noteLook));
}

void WriteCard::render() const {
    const auto* target = viewModel.targets().selectedDisk();
    const auto& image = viewModel.image().selectedImage();
    targetHint->setVisible(!target);
    targetRow->setVisible(target);
    if (target) targetRow->setValue(QString::fromStdString(target->displaySummary()));
    imageRow->setVisible(image.has_value());
    if (image) {
        imageRow->setValue(
            QString::fromStdString(image->displayName() + " · " + byteCountText(image->sizeBytes)));
    }
    verifySwitch->setChecked(viewModel.write().verifyAfterWrite());
    verifySwitch->setEnabled(!viewModel.isBusy());
    renderHint();
}

void WriteCard::renderHint() const {
    const auto* target = viewModel.targets().selectedDisk();
    const auto& image = viewModel.image().selectedImage();
    const auto obstacle = viewModel.writeObstacle();
    const auto objection = obstacle || !image || !target ? obstacle : imageOnDiskText(*image, *target);
    const auto words = QString::fromStdString(objection.value_or(""));
    writeButton->setEnabled(!obstacle);
    writeButton->setToolTip(words);
    if (writeButton->accessibleDescription() != words) writeButton->setAccessibleDescription(words);
    hint->setText(words);
    hint->setLook({.font = FontRole::caption, .tone = image && target ? Tone::orange : Tone::secondary});
    // The badge says that an operation runs. Here the words would come and go with each scan.
    hint->setVisible(objection && !viewModel.isBusy());
}

}  // namespace tessel
