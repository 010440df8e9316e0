#include <QAccessible>

#include "tests/app/WindowTest.h"
#include "views/controls/DisclosureButton.h"
#include "views/controls/ProgressBar.h"
#include "views/controls/Switch.h"

namespace tessel {

namespace {

/// Roles of things that a person can do something with.
bool isOperable(QAccessible::Role role) {
    using enum QAccessible::Role;
    for (const auto operable : {PushButton, RadioButton, CheckBox, EditableText, ListItem, StaticText}) {
        if (role == operable) return true;
    }
    return false;
}

class AccessibilityTests : public WindowTest {
  protected:
    static QAccessibleInterface& accessible(QWidget& widget) {
        return *QAccessible::queryAccessibleInterface(&widget);
    }

    static void expectNamesAndRoles(const QWidget& ancestor) {
        int controls = 0;
        for (auto* widget : shownWidgets<QWidget>(ancestor)) {
            if (widget->focusPolicy() == Qt::NoFocus) continue;
            ++controls;
            auto& control = accessible(*widget);
            EXPECT_FALSE(control.text(QAccessible::Name).isEmpty()) << widget->metaObject()->className();
            EXPECT_TRUE(isOperable(control.role()))
                << control.text(QAccessible::Name).toStdString() << " is a " << control.role();
        }
        EXPECT_GT(controls, 1);
    }
};

}  // namespace

TEST_F(AccessibilityTests, everyControlHasANameAndARole) {
    openReady();
    click(control<Switch>("Show All Disks"));
    clickRow("disk0");
    click(the<DisclosureButton>());  // opens the details
    expectNamesAndRoles(window());
    click(button("Write Disk Image"));
    expectNamesAndRoles(*alert());
    EXPECT_EQ(accessible(*alert()).text(QAccessible::Name), "Confirm Destructive Write");
}

TEST_F(AccessibilityTests, progressIsAValueAndSwitchesHaveAState) {
    openWriting();
    const auto bars = shownWidgets<ProgressBar>(window());
    ASSERT_EQ(bars.size(), 2u);
    const std::pair<const char*, int> expected[] = {{"Overall Workflow", 59},
                                                    {"SD Preparation and Writing", 44}};
    for (size_t i = 0; i < bars.size(); ++i) {
        auto& bar = accessible(*bars[i]);
        EXPECT_EQ(bar.role(), QAccessible::ProgressBar);
        EXPECT_EQ(bar.text(QAccessible::Name), expected[i].first);
        ASSERT_TRUE(bar.valueInterface());
        EXPECT_EQ(bar.valueInterface()->currentValue().toInt(), expected[i].second);
        EXPECT_EQ(bar.valueInterface()->maximumValue().toInt(), 100);
    }
    auto& verify = accessible(control<Switch>("Verify the written image with SHA-256"));
    EXPECT_TRUE(verify.state().checked);
    EXPECT_TRUE(verify.state().disabled);
    EXPECT_TRUE(accessible(button("Write Disk Image")).state().disabled);
}

}  // namespace tessel
