#pragma once

#include "Models/InformationDictionary.h"
#include "Views/Format/SettingsText.h"

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace ostrella {

class AppSettings;
class PreferenceStore;
class UpdateController;

/// The settings window: the four values of AppSettings in two tabs, and how updates are looked for.
/// Main thread only.
///
/// A number is described by a map: `label`, `from`, `to` and `step`.
class SettingsModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")

    /// The fixed texts of SettingsText by name.
    Q_PROPERTY(QVariantMap texts READ texts CONSTANT)
    /// The tabs from the left: maps with `value`, `title` and `symbol`.
    Q_PROPERTY(QVariantList tabs READ tabs CONSTANT)
    /// The `value` of the tab on show; it outlives the process.
    Q_PROPERTY(QString tab READ tab WRITE setTab NOTIFY tabChanged)

    Q_PROPERTY(QVariantMap maxIterationsField READ maxIterationsField CONSTANT)
    Q_PROPERTY(QVariantMap inletOffsetField READ inletOffsetField CONSTANT)
    Q_PROPERTY(QVariantMap wakeLengthField READ wakeLengthField CONSTANT)
    Q_PROPERTY(QVariantMap seedCountField READ seedCountField CONSTANT)
    /// As they are stored, also out of their ranges.
    Q_PROPERTY(
        int maxIterations READ maxIterations WRITE setMaxIterations NOTIFY maxIterationsChanged)
    Q_PROPERTY(double inletOffset READ inletOffset WRITE setInletOffset NOTIFY inletOffsetChanged)
    Q_PROPERTY(double wakeLength READ wakeLength WRITE setWakeLength NOTIFY wakeLengthChanged)
    Q_PROPERTY(int seedCount READ seedCount WRITE setSeedCount NOTIFY seedCountChanged)

    Q_PROPERTY(QString version READ version CONSTANT)
    /// False where there is no updater: then nothing of updates can be set.
    Q_PROPERTY(bool hasUpdates READ hasUpdates CONSTANT)
    Q_PROPERTY(bool checksAutomatically READ checksAutomatically WRITE setChecksAutomatically NOTIFY
            checksAutomaticallyChanged)
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY canCheckForUpdatesChanged)

public:
    static constexpr std::string_view tabKey = "Ostrella.settingsTab";

    /// `info` is what the package says of itself, `updates` may be null; the others outlive the
    /// model, and so do the updates.
    SettingsModel(AppSettings& settings, PreferenceStore& preferences,
        const std::optional<InformationDictionary>& info, UpdateController* updates,
        QObject* parent = nullptr);

    QVariantMap texts() const { return texts_; }
    QVariantList tabs() const;
    QString tab() const;
    void setTab(const QString& rawValue);

    QVariantMap maxIterationsField() const;
    QVariantMap inletOffsetField() const;
    QVariantMap wakeLengthField() const;
    QVariantMap seedCountField() const;
    int maxIterations() const;
    double inletOffset() const;
    double wakeLength() const;
    int seedCount() const;
    void setMaxIterations(int value);
    void setInletOffset(double value);
    void setWakeLength(double value);
    void setSeedCount(int value);

    QString version() const { return version_; }
    bool hasUpdates() const { return updates_ != nullptr; }
    bool checksAutomatically() const;
    void setChecksAutomatically(bool automatically);
    bool canCheckForUpdates() const;
    Q_INVOKABLE void checkForUpdates();

    /// Puts the values of the tab on show back.
    Q_INVOKABLE void restoreDefaults();

Q_SIGNALS:
    void tabChanged();
    void maxIterationsChanged();
    void inletOffsetChanged();
    void wakeLengthChanged();
    void seedCountChanged();
    void checksAutomaticallyChanged();
    void canCheckForUpdatesChanged();

private:
    AppSettings& settings_;
    PreferenceStore& preferences_;
    UpdateController* updates_;
    QVariantMap texts_;
    QString version_;
    SettingsTab tab_;
};

} // namespace ostrella
