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

TEST(ElidedLabelTests, keepsItsWholeTextAndNeverReadsMarkup) {
    ElidedLabel label({}, Qt::ElideRight);
    label.setText("<b>A medium with a name that is too long for its cell</b>");
    label.resize(80, 20);
    EXPECT_TRUE(label.isElided());
    EXPECT_LT(label.minimumSizeHint().width(), 80);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&label)->text(QAccessible::Name), label.text());
    EXPECT_TRUE(plainToolTip(label.text()).contains("&lt;b&gt;"));
    label.resize(2000, 20);
    EXPECT_FALSE(label.isElided());
}

TEST(SwitchTests, mouseAndKeyboardToggleItAndScreenReadersHearACheckBox) {
    Switch toggle("Show All Disks", Switch::Size::small);
    toggle.resize(toggle.sizeHint());
    toggle.show();
    QTest::mouseClick(&toggle, Qt::LeftButton, {}, {toggle.width() - 2, toggle.height() / 2});
    EXPECT_TRUE(toggle.isChecked());
    QAccessibleInterface* heard = QAccessible::queryAccessibleInterface(&toggle);
    EXPECT_EQ(heard->role(), QAccessible::CheckBox);
    EXPECT_TRUE(heard->state().checked);
    QTest::keyClick(&toggle, Qt::Key_Space);
    EXPECT_FALSE(toggle.isChecked());
}

}  // namespace tessel
