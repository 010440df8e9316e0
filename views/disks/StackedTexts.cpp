#include "views/disks/StackedTexts.h"

#include <QVBoxLayout>

namespace tessel {

QVBoxLayout* stackedTexts(QWidget* above, QWidget* below) {
    auto* column = new QVBoxLayout;
    column->setSpacing(1);
    column->addStretch();
    column->addWidget(above);
    column->addWidget(below);
    column->addStretch();
    return column;
}

}  // namespace tessel
