#include "app/ImageCard.h"

#include <QHBoxLayout>

#include "app/Keyboard.h"
#include "foundation/ByteCount.h"
#include "views/controls/Card.h"

namespace tessel {

ImageCard::ImageCard(TesselViewModel& viewModel) :
    Card("Raw Disk Image"),
    viewModel(viewModel),
    selectButton(new Button({.text = "Select Image",
                             .symbol = "folder",
                             .look = Button::Look::prominent,
                             .key = keyFor(QKeySequence::Open, Qt::CTRL | Qt::Key_O)})),
    fileRow(new InfoRow("File")),
    pathRow(new InfoRow("Path")),
    sizeRow(new InfoRow("Size")),
    hint(new SymbolLabel("info.circle.fill",
                         "The file extension is supported. Confirm that this file contains the intended raw "
                         "disk image before writing.",
                         {.font = FontRole::caption, .tone = Tone::blue})),
    dropHint(wrappedLabel("An image file can also be dropped onto this window.",
                          {.font = FontRole::smallestCaption, .tone = Tone::secondary})) {
    setFocusProxy(selectButton);
    connect(selectButton, &Button::clicked, this, [this] { this->viewModel.chooseImage(); });

    auto* top = new QHBoxLayout;
    top->addLayout(
        cardHeading("doc.badge.plus", "Raw Disk Image", "Select an uncompressed .img, .raw, or .bin file."),
        1);
    top->addWidget(selectButton, 0, Qt::AlignTop);
    content().addLayout(top);
    content().addWidget(new Divider);
    for (auto* row : {fileRow, pathRow, sizeRow})
        content().addWidget(row);
    content().addWidget(hint);
    content().addWidget(dropHint);
}

void ImageCard::render() const {
    const auto& image = viewModel.image().selectedImage();
    selectButton->setEnabled(!viewModel.isBusy());
    fileRow->setValue(image ? QString::fromStdString(image->displayName()) : "No image selected");
    pathRow->setValue(image ? QString::fromStdString(image->displayPath()) : "Not selected");
    sizeRow->setValue(image ? QString::fromStdString(byteCountText(image->sizeBytes)) : "Unknown");
    hint->setVisible(image.has_value());
    dropHint->setVisible(!image);
}

}  // namespace tessel
