#include "platform/qt/QtDesktop.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QIdentityProxyModel>
#include <QScreen>
#include <QSettings>
#include <QSplitter>
#include <QStandardPaths>
#include <QTreeView>
#include <utility>

#include "foundation/ByteCount.h"
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

/// Shows sizes in the units of the rest of the program, in the panel that Qt brings itself.
class PanelModel : public QIdentityProxyModel {
  public:
    using QIdentityProxyModel::QIdentityProxyModel;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        const auto* files = qobject_cast<QFileSystemModel*>(sourceModel());
        const QModelIndex file = mapToSource(index);
        if (!files || role != Qt::DisplayRole || index.column() != sizeColumn || files->isDir(file))
            return QIdentityProxyModel::data(index, role);
        return QString::fromStdString(byteCountText(static_cast<uint64_t>(files->size(file))));
    }

  private:
    static constexpr int sizeColumn = 1;
};

/// Makes the panel that Qt brings itself fit for use. Does nothing to the desktop's own.
void furnishOwnPanel(QFileDialog& dialog) {
    QList<QUrl> places;
    for (const auto location :
         {QStandardPaths::HomeLocation, QStandardPaths::DesktopLocation, QStandardPaths::DownloadLocation}) {
        const QString folder = QStandardPaths::writableLocation(location);
        if (QFileInfo(folder).isDir()) places << QUrl::fromLocalFile(folder);
    }
    dialog.setSidebarUrls(places);
    dialog.setProxyModel(new PanelModel(&dialog));
    auto* list = dialog.findChild<QTreeView*>();
    auto* sidebar = dialog.findChild<QSplitter*>();
    if (!list || !sidebar) return;
    const int em = dialog.fontMetrics().height();
    const QSize room = dialog.screen()->availableSize() * 9 / 10;  // beside the frame
    dialog.resize(QSize(60 * em, 36 * em).boundedTo(room));
    sidebar->setSizes({dialog.width() / 6, dialog.width() * 5 / 6});
    list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
}

}  // namespace

std::filesystem::path localPath(const QUrl& url) {
    const auto bytes = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    std::filesystem::path path = bytes.toStdString();
    const QString name = QString::fromStdString(path.filename().string());
    std::error_code failure;
    if (!name.contains(QChar::ReplacementCharacter) || std::filesystem::exists(path, failure)) return path;
    std::filesystem::directory_iterator entry(path.parent_path(), failure);
    for (; !failure && entry != std::filesystem::directory_iterator(); entry.increment(failure))
        if (QString::fromStdString(entry->path().filename().string()) == name) return entry->path();
    return path;
}

Task<std::optional<std::filesystem::path>> QtDesktop::runOpenPanel(OpenPanel panel) {
    forgetSettings();
    QFileDialog dialog(window, QString::fromStdString(panel.title),
                       QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (!suggestedFile.empty()) dialog.selectFile(QString::fromStdString(suggestedFile.string()));
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilter(nameFilter(panel));
    dialog.setLabelText(QFileDialog::Accept, QString::fromStdString(panel.prompt));
    furnishOwnPanel(dialog);
    if (!co_await Answer{dialog} || dialog.selectedUrls().isEmpty()) co_return std::nullopt;
    co_return localPath(dialog.selectedUrls().first());
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
