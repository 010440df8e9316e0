#include "views/controls/TextLabel.h"

#include <gtest/gtest.h>

namespace tessel {

TEST(ElidedLabelTests, whatFollowsANameKeepsItsDirectionWhenTheEndOfTheNameIsLeftOut) {
    const QString name = QString::fromUtf8("\u2068שלום שלום שלום שלום\u2069");
    const struct {
        const char* what;
        QString text;
        QString marks;  ///< the visible ones, in their order
    } cases[] = {
        {"the end is left out", name + " · SD card reader (64 GB)", QString::fromUtf8("\u2068\u2069…")},
        {"the beginning is left out", "64 GB SD card reader · " + name, QString::fromUtf8("…\u2069")},
        {"its middle is left out", name, QString::fromUtf8("\u2068…\u2069")},
        {"left to right", "Generic STORAGE DEVICE (64 GB)", QString::fromUtf8("…")},
    };
    for (const auto& [what, text, marks] : cases) {
        ElidedLabel label({}, Qt::ElideMiddle);
        label.setText(text);
        label.resize(label.fontMetrics().horizontalAdvance(text) / 2, 20);
        QString shown = label.shownText();
        shown.removeIf(
            [](QChar character) { return !QString::fromUtf8("\u2068\u2069…").contains(character); });
        EXPECT_EQ(shown, marks) << what << ": " << label.shownText().toStdString();
    }
}

}  // namespace tessel
