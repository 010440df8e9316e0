#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QTest>

#include "rehearsal/window/WidgetSearch.h"
#include "tests/support/SampleDisks.h"
#include "views/controls/ElidedLabel.h"
#include "views/controls/InfoRow.h"
#include "views/controls/SelectableValue.h"
#include "views/controls/Switch.h"
#include "views/controls/ToolTip.h"

namespace tessel {

namespace {

const QString longPath =
    "/home/somebody/Downloads/images/2024-05-08-operating-system-full-arm64-build-12345.img";

}  // namespace

TEST(InfoRowTests, aLongValueIsShortenedInTheMiddleAndCopiedWhole) {
    InfoRow row("Path");
    row.setValue(longPath);
    row.resize(300, 20);
    row.show();
    auto* value = shownWidgets<SelectableValue>(row).front();
    EXPECT_TRUE(value->isElided());
    EXPECT_EQ(value->focusPolicy(), Qt::StrongFocus);

    QApplication::clipboard()->clear();
    QTest::keyClick(value, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), longPath);
    QTest::keyClick(value, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(value, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), longPath);
    QTest::keyClick(value, Qt::Key_X, Qt::ControlModifier);
    QTest::keyClicks(value, "typed");
    EXPECT_EQ(row.value(), longPath) << "a value can't be edited";

    row.resize(1400, 20);
    EXPECT_FALSE(value->isElided());
    EXPECT_EQ(value->focusPolicy(), Qt::ClickFocus);
}

}  // namespace tessel
