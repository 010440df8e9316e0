#include "app/ProgressCard.h"

#include <QHBoxLayout>

#include "app/StatusTexts.h"

namespace tessel {

namespace {

constexpr TextLook smallLook{.font = FontRole::smallestCaption, .tone = Tone::secondary};

}  // namespace

ProgressCard::ProgressCard(const TesselViewModel& viewModel) :
    Card("Write Progress"),
    viewModel(viewModel),
    status(wrappedLabel({}, {.font = FontRole::caption})),
    phase(new TextLabel({}, smallLook)),
    detail(wrappedLabel({}, smallLook)),
    transferRate(wrappedLabel({}, smallLook)),
    hint(wrappedLabel({}, {.font = FontRole::smallestCaption, .tone = Tone::orange})) {
    auto* heading = new QVBoxLayout;
    heading->setSpacing(spacing::hair);
    heading->addWidget(new TextLabel("Write Progress", {.font = FontRole::headline, .weight = QFont::Bold}));
    heading->addWidget(status);
    content().addLayout(heading);
    overall = addGauge("Overall Workflow", nullptr);
    writing = addGauge("SD Preparation and Writing", phase);
    auto* details = new QVBoxLayout;
    details->setSpacing(spacing::hair);
    details->addWidget(detail);
    details->addWidget(transferRate);
    details->addWidget(hint);
    content().addLayout(details);
    hint->setVisible(false);
    // The line of the rate is kept free, so that nothing moves when there is one.
    followApplicationFont(*transferRate, [this] {
        transferRate->setMinimumHeight(QFontMetrics(styledFont(smallLook.font)).height());
    });
}

ProgressCard::Gauge ProgressCard::addGauge(const QString& title, TextLabel* subtitle) {
    const Gauge gauge{new TextLabel({}, {.font = FontRole::monospaced, .weight = QFont::Bold}),
                      new ProgressBar};
    gauge.bar->setAccessibleName(title);

    auto* titles = new QVBoxLayout;
    titles->setSpacing(spacing::hair);
    titles->addWidget(new TextLabel(title, {.font = FontRole::caption, .weight = QFont::DemiBold}));
    if (subtitle) titles->addWidget(subtitle);
    auto* line = new QHBoxLayout;
    line->addLayout(titles, 1);
    line->addWidget(gauge.percentage, 0, Qt::AlignBottom);

    auto* column = new QVBoxLayout;
    column->setSpacing(spacing::tight);
    column->addLayout(line);
    column->addWidget(gauge.bar);
    content().addLayout(column);
    return gauge;
}

void ProgressCard::Gauge::display(double fraction) const {
    percentage->setText(percentText(fraction));
    bar->setFraction(fraction);
}

void ProgressCard::render(const QString& note) const {
    status->setText(liveStatusTitle(viewModel));
    status->setLook(
        {.font = FontRole::caption, .tone = statusColor(viewModel.state()), .weight = QFont::DemiBold});
    phase->setText(viewModel.write().isCancellationRequested()
                       ? stoppingTitle
                       : QString::fromStdString(viewModel.progress().writePhaseTitle));
    overall.display(viewModel.overallWorkflowProgress());
    writing.display(viewModel.progress().sdPreparationAndWriteProgress);
    detail->setText(QString::fromStdString(viewModel.progress().writeProgressDetail));
    transferRate->setText(QString::fromStdString(viewModel.progress().writeTransferRate));
    hint->setText((progressHint(viewModel) + "\n" + note).trimmed());
    hint->setVisible(!hint->text().isEmpty());
}

}  // namespace tessel
