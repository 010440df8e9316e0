#include <QDropEvent>
#include <QMimeData>

#include "tests/app/WindowTest.h"
#include "views/controls/Switch.h"
#include "views/log/OperationLogView.h"

namespace tessel {

namespace {

class ImageChoiceTests : public WindowTest {
  protected:
    /// Drops what the URLs name onto the log. Returns whether that was accepted.
    bool drop(const QList<QUrl>& urls) {
        QMimeData data;
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

    static QUrl url(const std::filesystem::path& file) {
        return QUrl::fromEncoded("file://" + QByteArray::fromStdString(file.string()).toPercentEncoding("/"));
    }
};

}  // namespace

TEST_F(ImageChoiceTests, aDroppedFileIsInspectedAsAChosenOne) {
    open();
    const auto other = folder.write("other.iso", "x");
    const auto link = folder.path() / "link.img";
    std::filesystem::create_symlink(image, link);
    for (const auto& [file, isImage] : std::vector<std::pair<std::filesystem::path, bool>>{
             {other, false}, {folder.path(), false}, {link, true}, {other, false}}) {
        EXPECT_TRUE(drop({url(file)}));
        EXPECT_EQ(badge(), isImage ? "Disk image selected" : "Image selection failed");
        if (!isImage) {
            EXPECT_EQ(log().back(),
                      "Error: Select an uncompressed raw image with an .img, .raw, or .bin extension.");
        }
    }
    EXPECT_EQ(viewModel().image().selectedImage()->url, image) << "the image that the link led to";
    for (const QList<QUrl>& others :
         {QList<QUrl>{}, QList{url(image), url(image)}, QList{QUrl("https://example.invalid/card.img")},
          QList{QUrl("file://other" + url(image).path())}})
        EXPECT_FALSE(drop(others)) << others.size();
}

TEST_F(ImageChoiceTests, aNameThatIsNotUtf8IsOpenedAsItIs) {
    open();
    const auto latin1 = folder.write("caf\xe9.img", "x");
    const auto asDialogsNameIt = QUrl::fromLocalFile(QString::fromStdString(latin1.string()));
    for (const auto& named : {url(latin1), asDialogsNameIt}) {
        EXPECT_TRUE(drop({named}));
        EXPECT_EQ(badge(), "Disk image selected");
        EXPECT_EQ(viewModel().image().selectedImage()->url, latin1);
        EXPECT_THAT(texts(), testing::Contains("caf\ufffd.img"));
    }
}

TEST_F(ImageChoiceTests, nothingCanBeChosenDuringAWriteNorDroppedDuringAQuestion) {
    openWriting();
    EXPECT_EQ(window().windowTitle(), "31% – Velmora Tessel");
    for (const char* text : {"Select Image", "Refresh Disks", "Write Disk Image", "Clear"})
        EXPECT_FALSE(button(text).isEnabled()) << text;
    for (const char* text : {"Show All Disks", "Verify the written image with SHA-256"})
        EXPECT_FALSE(control<Switch>(text).isEnabled()) << text;
    EXPECT_FALSE(drop({url(image)}));
    holds.writing.release();
    until([this] { return alertTitled("SD Card Is Safe to Remove"); });
    EXPECT_FALSE(drop({url(image)}));
    click(button("Done"));
    EXPECT_TRUE(drop({url(image)}));
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
