#pragma once

#include "Platform/DesktopAppearance.h"

#include <QString>
#include <QVariant>

#include <map>
#include <utility>
#include <vector>

namespace ostrella {

/// The settings that a desktop's portal offers (org.freedesktop.portal.Settings), as far as they
/// say how windows should look. Whatever has the wrong type or an unknown value says nothing.
class PortalSettings {
public:
    /// A namespace and a key in it.
    using Name = std::pair<QString, QString>;

    /// The settings that count, for portals that are asked for one at a time.
    static const std::vector<Name>& names();
    /// Their namespaces.
    static const QStringList& namespaces();

    /// Takes a value as it came, wrapped into any number of variants.
    void set(const Name& name, const QVariant& value);

    /// What the settings say together. Dark or light comes from the common setting, else from
    /// GNOME's, else from the name of its theme. Motion is unwanted where the common setting says
    /// so, or GNOME's animations are off, or Plasma's last no time.
    DesktopAppearance::Values appearance() const;

    /// `value` out of its variants.
    static QVariant bare(const QVariant& value);

private:
    QVariant value(const Name& name) const;

    std::map<Name, QVariant> values_;
};

} // namespace ostrella
