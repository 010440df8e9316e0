#include "platform/qt/QtDesktop.h"

#include <QApplication>
#include <QFileDialog>
#include <QStandardPaths>
#include <system_error>
#include <utility>

#include "platform/qt/Notification.h"
#include "platform/qt/SleepBlock.h"

namespace tessel {

namespace {

/// Returns a pattern for each mix of upper and lower case ("*.ab", "*.aB", "*.Ab", "*.AB"), because the
/// desktop's own dialogs may be case-sensitive.
QStringList patternsFor(const QString& extension) {
    QStringList patterns{"*."};
    for (const QChar letter : extension) {
        const QStringList beginnings = std::exchange(patterns, {});
        for (const QString& beginning : beginnings)
            patterns << beginning + letter.toLower() << beginning + letter.toUpper();
    }
    patterns.removeDuplicates();
    return patterns;
}

QString nameFilter(const Desktop::OpenPanel& panel) {
    QStringList patterns;
    for (const auto& extension : panel.extensions)
        patterns << patternsFor(QString::fromStdString(extension));
    return QString::fromStdString(panel.message) + " (" + patterns.join(' ') + ")";
}

}  // namespace

std::optional<std::filesystem::path> QtDesktop::runOpenPanel(const OpenPanel& panel) {
    QFileDialog dialog(window, QString::fromStdString(panel.title),
                       QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (!suggestedFile.empty()) dialog.selectFile(QString::fromStdString(suggestedFile.string()));
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilter(nameFilter(panel));
    dialog.setLabelText(QFileDialog::Accept, QString::fromStdString(panel.prompt));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;

    const std::filesystem::path chosen(dialog.selectedFiles().first().toStdString());
    std::error_code unresolvable;
    const auto resolved = std::filesystem::canonical(chosen, unresolvable);
    return unresolvable ? chosen : resolved;
}

void QtDesktop::beep() {
    QApplication::beep();
}

void QtDesktop::requestUserAttention(const Notification& notification) {
    if (QApplication::activeWindow()) return;
    if (window) QApplication::alert(window);
    showNotification(notification);
}

std::unique_ptr<TemporaryActivity> QtDesktop::beginActivity(const std::string& reason) {
    return blockSleep(reason);
}

}  // namespace tessel
