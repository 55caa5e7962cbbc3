#pragma once

#include "Rendering/OrientationAxis.h"
#include "Views/SharedObjects.h"

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <glm/vec3.hpp>

namespace ostrella {

/// The card that turns the model by quarter turns and points its axes into the flow. Main thread
/// only.
class OrientCardModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the viewport's model")
    /// `title`, `rotation`, `reset`, `resetHelp`, `resetName`, `done`, `doneKey`, `doneHelp`,
    /// `close`, `turnGroup`, `facingGroup` and `clearsResult`.
    Q_PROPERTY(QVariantMap texts READ texts CONSTANT)
    Q_PROPERTY(QString angles READ angles NOTIFY changed)
    /// For x, y and z, maps with `axis`, `name`, `color`, and `turns`: two maps with `sign`,
    /// `symbol` and `help`.
    Q_PROPERTY(QVariantList axes READ axes CONSTANT)
    /// Maps with `facing`, `label`, `help` and `name`.
    Q_PROPERTY(QVariantList facings READ facings CONSTANT)
    /// The one of the facings that the model has, or -1.
    Q_PROPERTY(int facing READ facing NOTIFY changed)
    /// A turn will end the result on show.
    Q_PROPERTY(bool clearsResult READ clearsResult NOTIFY changed)

public:
    explicit OrientCardModel(const SharedObjects& shared, QObject* parent = nullptr);

    QVariantMap texts() const;
    QString angles() const;
    QVariantList axes() const;
    QVariantList facings() const;
    int facing() const;
    bool clearsResult() const;

    Q_INVOKABLE void turn(int axis, double sign);
    Q_INVOKABLE void face(int facing);
    Q_INVOKABLE void reset();
    /// Ends orient mode.
    Q_INVOKABLE void finish();

Q_SIGNALS:
    void changed();

private:
    glm::dvec3 rotation() const;

    SharedObjects shared_;
};

} // namespace ostrella
