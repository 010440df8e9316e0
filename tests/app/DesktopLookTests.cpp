// GNOME's settings of a dark style and of the size of text, as GLib stores them, and what the window makes of
// them.

#include <gio/gio.h>

#include "platform/qt/DesktopLook.h"
#include "tests/app/WindowTest.h"

namespace tessel {

namespace {

constexpr auto schema = R"(<schemalist>
  <enum id="scheme"><value nick="default" value="0"/><value nick="prefer-dark" value="1"/></enum>
  <schema id="org.gnome.desktop.interface" path="/org/gnome/desktop/interface/">
    <key name="color-scheme" enum="scheme"><default>"default"</default></key>
    <key name="text-scaling-factor" type="d"><default>1.0</default></key>
  </schema>
</schemalist>)";

class DesktopLookTests : public WindowTest {
  protected:
    /// Skips the test unless the process is its own, because GLib looks for schemas once per process.
    void SetUp() override {
        folder.write("interface.gschema.xml", schema);
        const bool isCompiled =
            std::system(("glib-compile-schemas " + folder.path().string()).c_str()) == EXIT_SUCCESS;
        if (testing::UnitTest::GetInstance()->test_to_run_count() != 1 || !isCompiled)
            GTEST_SKIP() << "needs glib-compile-schemas and a process of its own";
        qputenv("GSETTINGS_SCHEMA_DIR", folder.path().c_str());
        qputenv("GSETTINGS_BACKEND", "memory");
    }

    static bool isDark() { return QApplication::palette().window().color().lightness() < 128; }
};

}  // namespace

TEST_F(DesktopLookTests, thePaletteAndTheScaleOfTextFollowGnomeAlone) {
    for (const char* desktop : {"KDE", "ubuntu:GNOME"}) {
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        const bool isFollowed = std::string(desktop) != "KDE";
        GSettings* const settings = g_settings_new("org.gnome.desktop.interface");
        double textScale = 0;
        const auto scaleWatch =
            watchDesktopLook([&](const DesktopLook& look) { textScale = look.textScale; });
        auto look = followDesktopLook();
        EXPECT_FALSE(isDark());
        g_settings_set_string(settings, "color-scheme", "prefer-dark");
        g_settings_set_double(settings, "text-scaling-factor", 1.5);
        QTest::qWait(50);
        EXPECT_EQ(isDark(), isFollowed) << desktop;
        EXPECT_EQ(textScale, isFollowed ? 1.5 : 0);
        look.reset();
        g_settings_reset(settings, "color-scheme");
        g_settings_reset(settings, "text-scaling-factor");
        QTest::qWait(50);
        EXPECT_EQ(isDark(), isFollowed) << "nothing follows any longer";
        g_object_unref(settings);
    }
}

}  // namespace tessel
