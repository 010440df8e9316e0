#include "app/HeaderBar.h"

#include <QHBoxLayout>
#include <QPainter>

#include "app/About.h"
#include "app/StatusTexts.h"
#include "views/controls/Painting.h"
#include "views/controls/Symbol.h"
#include "views/controls/TextLabel.h"

namespace tessel {

namespace {

/// Shows the product's picture, which is a green card on a green tint.
class ProductMark : public QWidget {
  public:
    ProductMark() {
        followApplicationFont(*this, [this] { setFixedSize(scaledWithFont(QSize(48, 48))); });
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QColor green = currentColors().green;
        paintBox(painter, {.bounds = rect(), .radius = 14, .fill = withOpacity(green, 0.12)});
        paintSymbol(painter, "sdcard.fill", rect(), scaledWithFont(26), green);
    }
};

}  // namespace

HeaderBar::HeaderBar(const TesselViewModel& viewModel) : viewModel(viewModel), badge(new StatusBadge) {
    auto* titles = new QVBoxLayout;
    titles->setSpacing(spacing::hair);
    auto* title = new TextLabel("Velmora Tessel", {.font = FontRole::title, .weight = QFont::Bold});
    title->setToolTip(aboutText());
    title->setAccessibleDescription(aboutText());
    titles->addWidget(title);
    titles->addWidget(new TextLabel("General-Purpose SD Card Imaging",
                                    {.font = FontRole::caption, .tone = Tone::secondary}));

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(18, 14, 18, 14);
    row->setSpacing(14);
    row->addWidget(new ProductMark);
    row->addLayout(titles);
    row->addStretch();
    row->addWidget(badge);
}

void HeaderBar::render(const QString& note) const {
    badge->display(
        {.text = statusTitle(viewModel.state()),
         .announcement = note.isEmpty() ? announcement(viewModel) : announcement(viewModel) + ". " + note,
         .tone = statusColor(viewModel.state()),
         .isBusy = viewModel.isBusy()});
}

void HeaderBar::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), currentColors().windowBackground);
}

}  // namespace tessel
