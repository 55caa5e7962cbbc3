#pragma once

#include "Models/AppSettings.h"
#include "Models/PreferenceStore.h"
#include "Views/Settings/SettingsModel.h"
#include "Views/SideBench.h"

#include <QVariant>

#include <memory>

namespace ostrella {
void useSettingsModule();
} // namespace ostrella

namespace ostrella::test {

/// The settings window over preferences of its own.
class SettingsWindow : public SideBench {
protected:
    static constexpr auto tab = QAccessible::PageTab;
    static constexpr auto stepper = QAccessible::SpinBox;
    static constexpr auto slider = QAccessible::Slider;
    static constexpr auto button = QAccessible::Button;
    static constexpr auto check = QAccessible::CheckBox;

    ~SettingsWindow() override { window.reset(); }

    void show() {
        useSettingsModule();
        settings = std::make_unique<AppSettings>(preferences);
        model = std::make_unique<SettingsModel>(*settings, preferences,
            InformationDictionary{{std::string(InformationKeys::version), std::string("1.2.0")}},
            updates.get());
        open("Settings/SettingsView.qml", model.get());
    }
    void showStreamlines() {
        preferences.set(SettingsModel::tabKey, std::string("streamlines"));
        show();
    }

    /// Where a stepper's buttons are.
    QPointF lessOf(const char* name) const {
        const QRectF place = frame(item(name, stepper));
        return {place.left() + 12, place.center().y()};
    }
    QPointF moreOf(const char* name) const {
        const QRectF place = frame(item(name, stepper));
        return {place.right() - 12, place.center().y()};
    }

    MemoryPreferences preferences;
    std::unique_ptr<AppSettings> settings;
    std::unique_ptr<SettingsModel> model;
};

} // namespace ostrella::test
