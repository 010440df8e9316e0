#include "platform/qt/QtDesktop.h"

#include <QApplication>
#include <QFileDialog>
#include <QSettings>
#include <QStandardPaths>
#include <utility>

#include "platform/qt/DesktopServices.h"

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

/// Keeps Qt's own dialog from recording in the settings what the user has looked at: points them to a folder
/// that does not exist and can't be made. Has no effect on a Mac, where settings lie in no folder.
void forgetSettings() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, "/dev/null");
}

/// Opens the dialog, and resumes its waiter in a later turn of the event loop than the one that closes it. No
/// event loop runs within another, since that would leave users of assistive technology without a keyboard.
struct Answer {
    QFileDialog& dialog;

    bool await_ready() const noexcept { return false; }
    bool await_resume() const { return dialog.result() == QDialog::Accepted; }

    template <typename Promise>
    void await_suspend(std::coroutine_handle<Promise> task) const {
        QObject::connect(
            &dialog, &QDialog::finished, &dialog,
            [task, mainThread = task.promise().context.mainThread] {
                mainThread->post([task] { task.resume(); });
            },
            Qt::SingleShotConnection);
        dialog.open();
    }
};

}  // namespace

Task<std::optional<std::filesystem::path>> QtDesktop::runOpenPanel(OpenPanel panel) {
    forgetSettings();
    QFileDialog dialog(window, QString::fromStdString(panel.title),
                       QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (!suggestedFile.empty()) dialog.selectFile(QString::fromStdString(suggestedFile.string()));
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilter(nameFilter(panel));
    dialog.setLabelText(QFileDialog::Accept, QString::fromStdString(panel.prompt));
    if (!co_await Answer{dialog} || dialog.selectedFiles().isEmpty()) co_return std::nullopt;
    co_return dialog.selectedFiles().first().toStdString();
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
