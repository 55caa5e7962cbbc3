#pragma once

#include "Views/Format/BoundingBoxText.h"
#include "Views/Format/QueuedUpdate.h"
#include "Views/SharedObjects.h"

#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

namespace ostrella {

struct PlatformWords;

/// The sidebar's sections: what they show, and what the user edits in them. Main thread only.
///
/// A number field is described by a map: `label`, `unit`, `from`, `to`, `fewestDigits` and
/// `mostDigits` (after the point).
class SidebarModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the window")

    /// The fixed texts of SidebarText and OrientText by name; a switch is a map of its texts.
    Q_PROPERTY(QVariantMap texts READ texts CONSTANT)

    /// False during a run: nothing in the sections can be edited then.
    Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY changed)

    /// Geometry. The rows of the empty texts are left out.
    Q_PROPERTY(bool hasMesh READ hasMesh NOTIFY changed)
    /// Said in place of the rows while there is no model.
    Q_PROPERTY(QString geometryText READ geometryText NOTIFY changed)
    Q_PROPERTY(QString fileName READ fileName NOTIFY changed)
    Q_PROPERTY(QString facets READ facets NOTIFY changed)
    Q_PROPERTY(QString boundingBox READ boundingBox NOTIFY changed)
    Q_PROPERTY(bool canLoad READ canLoad NOTIFY changed)

    /// Orientation.
    Q_PROPERTY(bool canOrient READ canOrient NOTIFY changed)
    Q_PROPERTY(bool isRotated READ isRotated NOTIFY changed)
    /// "Orient…" or "Done".
    Q_PROPERTY(QString orientButtonText READ orientButtonText NOTIFY changed)
    Q_PROPERTY(QVariantMap rotationXField READ rotationXField CONSTANT)
    Q_PROPERTY(QVariantMap rotationYField READ rotationYField CONSTANT)
    Q_PROPERTY(QVariantMap rotationZField READ rotationZField CONSTANT)
    Q_PROPERTY(double rotationX READ rotationX WRITE setRotationX NOTIFY changed)
    Q_PROPERTY(double rotationY READ rotationY WRITE setRotationY NOTIFY changed)
    Q_PROPERTY(double rotationZ READ rotationZ WRITE setRotationZ NOTIFY changed)

    /// Free stream.
    Q_PROPERTY(QStringList regimes READ regimes CONSTANT)
    Q_PROPERTY(int regime READ regime WRITE setRegime NOTIFY changed)
    Q_PROPERTY(QVariantMap velocityField READ velocityField CONSTANT)
    Q_PROPERTY(QVariantMap alphaField READ alphaField CONSTANT)
    Q_PROPERTY(QVariantMap betaField READ betaField CONSTANT)
    Q_PROPERTY(QVariantMap densityField READ densityField CONSTANT)
    Q_PROPERTY(double velocity READ velocity WRITE setVelocity NOTIFY changed)
    Q_PROPERTY(double alpha READ alpha WRITE setAlpha NOTIFY changed)
    Q_PROPERTY(double beta READ beta WRITE setBeta NOTIFY changed)
    Q_PROPERTY(double density READ density WRITE setDensity NOTIFY changed)

    /// Turbulence.
    Q_PROPERTY(QStringList turbulenceModels READ turbulenceModels CONSTANT)
    Q_PROPERTY(int turbulenceModel READ turbulenceModel WRITE setTurbulenceModel NOTIFY changed)
    /// The two switches belong to one model of turbulence.
    Q_PROPERTY(bool showsSwitches READ showsSwitches NOTIFY changed)
    Q_PROPERTY(
        bool rotationCorrection READ rotationCorrection WRITE setRotationCorrection NOTIFY changed)
    Q_PROPERTY(bool transition READ transition WRITE setTransition NOTIFY changed)

public:
    SidebarModel(
        const SharedObjects& shared, const PlatformWords& words, QObject* parent = nullptr);

    QVariantMap texts() const { return texts_; }

    bool isEnabled() const;
    bool hasMesh() const;
    QString geometryText() const;
    QString fileName() const;
    QString facets() const;
    QString boundingBox() const;
    bool canLoad() const;

    bool canOrient() const;
    bool isRotated() const;
    QString orientButtonText() const;
    QVariantMap rotationXField() const;
    QVariantMap rotationYField() const;
    QVariantMap rotationZField() const;
    double rotationX() const;
    double rotationY() const;
    double rotationZ() const;
    void setRotationX(double value);
    void setRotationY(double value);
    void setRotationZ(double value);

    QStringList regimes() const;
    int regime() const;
    void setRegime(int index);
    QVariantMap velocityField() const;
    QVariantMap alphaField() const;
    QVariantMap betaField() const;
    QVariantMap densityField() const;
    double velocity() const;
    double alpha() const;
    double beta() const;
    double density() const;
    void setVelocity(double value);
    void setAlpha(double value);
    void setBeta(double value);
    void setDensity(double value);

    QStringList turbulenceModels() const;
    int turbulenceModel() const;
    void setTurbulenceModel(int index);
    bool showsSwitches() const;
    bool rotationCorrection() const;
    void setRotationCorrection(bool isOn);
    bool transition() const;
    void setTransition(bool isOn);

    /// Asks for the file dialog.
    Q_INVOKABLE void load();
    Q_INVOKABLE void resetOrientation();
    Q_INVOKABLE void toggleOrientMode();

Q_SIGNALS:
    /// At most once per turn of the event loop.
    void changed();

private:
    void refreshBoundingBox();

    SharedObjects shared_;
    QVariantMap texts_;
    BoundingBoxText boundingBox_;
    /// The model or its orientation has changed since the box was asked for.
    bool isBoxStale_ = false;
    QueuedUpdate update_;
};

} // namespace ostrella
