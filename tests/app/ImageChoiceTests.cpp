#include <QDropEvent>
#include <QMimeData>

#include "tests/app/WindowTest.h"
#include "views/controls/Switch.h"
#include "views/log/OperationLogView.h"

namespace tessel {

namespace {

class ImageChoiceTests : public WindowTest {
  protected:
    /// Drops the files onto the log. Returns whether they were accepted.
    bool dropFiles(const std::vector<std::filesystem::path>& files) {
        QMimeData data;
        QList<QUrl> urls;
        for (const auto& file : files)
            urls << QUrl::fromLocalFile(QString::fromStdString(file.string()));
        data.setUrls(urls);
        auto& onto = *the<OperationLogView>().viewport();
        const auto actions = Qt::CopyAction | Qt::MoveAction;
        QDragEnterEvent enter({20, 20}, actions, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&onto, &enter);
        if (!enter.isAccepted()) return false;
        QDropEvent drop({20, 20}, actions, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&onto, &drop);
        untilIdle();
        return drop.isAccepted() && drop.dropAction() == Qt::CopyAction;
    }
};

}  // namespace

TEST_F(ImageChoiceTests, aDroppedFileIsInspectedAsAChosenOne) {
    open();
    const auto other = folder.write("other.iso", "x");
    const auto link = folder.path() / "link.img";
    std::filesystem::create_symlink(image, link);
    for (const auto& [files, isImage] : std::vector<std::pair<std::vector<std::filesystem::path>, bool>>{
             {{other}, false}, {{image, image}, false}, {{}, false}, {{link}, true}, {{other}, false}}) {
        EXPECT_TRUE(dropFiles(files));
        EXPECT_EQ(badge(), isImage ? "Disk image selected" : "Image selection failed");
        if (!isImage) {
            EXPECT_EQ(log().back(),
                      "Error: Select an uncompressed raw image with an .img, .raw, or .bin extension.");
        }
    }
    EXPECT_EQ(viewModel().image().selectedImage()->url, image) << "the image that the link led to";
}

TEST_F(ImageChoiceTests, nothingCanBeChosenDuringAWriteNorDroppedDuringAQuestion) {
    openWriting();
    EXPECT_EQ(window().windowTitle(), "59% – Velmora Tessel");
    for (const char* text : {"Select Image", "Refresh Disks", "Write Disk Image", "Clear"})
        EXPECT_FALSE(button(text).isEnabled()) << text;
    for (const char* text : {"Show All Disks", "Verify the written image with SHA-256"})
        EXPECT_FALSE(control<Switch>(text).isEnabled()) << text;
    EXPECT_FALSE(dropFiles({image}));
    holds.writing.release();
    until([this] { return alertTitled("SD Card Is Safe to Remove"); });
    EXPECT_FALSE(dropFiles({image}));
    click(button("Done"));
    EXPECT_TRUE(dropFiles({image}));
}

TEST_F(ImageChoiceTests, nothingOfItIsNotedInTheUsersSettings) {
    const auto settings = folder.path() / "settings";
    qputenv("XDG_CONFIG_HOME", settings.c_str());
    open();
    answerPanel(image);
    application.reset();
    EXPECT_FALSE(std::filesystem::exists(settings));
}

}  // namespace tessel
