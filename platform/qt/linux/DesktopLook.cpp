#include "platform/qt/DesktopLook.h"

#include <gio/gio.h>

#include <QStringList>
#include <string>
#include <utility>

#include "foundation/Release.h"

namespace tessel {

namespace {

constexpr auto schemaName = "org.gnome.desktop.interface";
constexpr auto colorSchemeKey = "color-scheme";
constexpr auto textScaleKey = "text-scaling-factor";
constexpr int preferDark = 1;  // G_DESKTOP_COLOR_SCHEME_PREFER_DARK

bool isGnome() {
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(':').contains("GNOME");
}

/// Returns whether the settings are installed; asking for others would end the program.
bool hasSettings() {
    auto* const source = g_settings_schema_source_get_default();
    if (!source) return false;
    const std::unique_ptr<GSettingsSchema, Release<g_settings_schema_unref>> schema{
        g_settings_schema_source_lookup(source, schemaName, TRUE)};
    return schema && g_settings_schema_has_key(schema.get(), colorSchemeKey) &&
           g_settings_schema_has_key(schema.get(), textScaleKey);
}

class GnomeLook : public TemporaryActivity {
  public:
    explicit GnomeLook(std::function<void(const DesktopLook&)> onChange) : onChange(std::move(onChange)) {
        for (const std::string key : {colorSchemeKey, textScaleKey})
            g_signal_connect_swapped(settings.get(), ("changed::" + key).c_str(), G_CALLBACK(report), this);
        // A setting that was never read is not watched.
        report(this);
    }

    ~GnomeLook() override { g_signal_handlers_disconnect_by_data(settings.get(), this); }

  private:
    static void report(GnomeLook* self) {
        self->onChange({.isDark = g_settings_get_enum(self->settings.get(), colorSchemeKey) == preferDark,
                        .textScale = g_settings_get_double(self->settings.get(), textScaleKey)});
    }

    std::function<void(const DesktopLook&)> onChange;
    std::unique_ptr<GSettings, Release<g_object_unref>> settings{g_settings_new(schemaName)};
};

}  // namespace

std::unique_ptr<TemporaryActivity> watchDesktopLook(std::function<void(const DesktopLook&)> onChange) {
    if (!isGnome() || !hasSettings()) return nullptr;
    return std::make_unique<GnomeLook>(std::move(onChange));
}

}  // namespace tessel
