#include "Views/Viewport/OrientCardModel.h"

#include "Brand/ViewportStyle.h"
#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Views/Format/OrientControls.h"
#include "Views/Format/ViewportText.h"
#include "Views/QStringOf.h"

#include <QColor>

#include <algorithm>
#include <array>
#include <iterator>

namespace ostrella {

OrientCardModel::OrientCardModel(const SharedObjects& shared, QObject* parent)
    : QObject(parent), shared_(shared) {}

glm::dvec3 OrientCardModel::rotation() const {
    const SimulationParameters& parameters = shared_.parameters;
    return {parameters.rotationX(), parameters.rotationY(), parameters.rotationZ()};
}

QVariantMap OrientCardModel::texts() const {
    return {{QStringLiteral("title"), qStringOf(OrientText::title)},
        {QStringLiteral("rotation"), qStringOf(OrientText::rotation)},
        {QStringLiteral("reset"), qStringOf(OrientText::reset)},
        {QStringLiteral("resetHelp"), qStringOf(OrientText::resetHelp)},
        {QStringLiteral("resetName"), qStringOf(OrientText::resetName)},
        {QStringLiteral("done"), qStringOf(OrientText::done)},
        {QStringLiteral("doneKey"), qStringOf(OrientText::doneKey)},
        {QStringLiteral("doneHelp"), qStringOf(OrientText::doneHelp)},
        {QStringLiteral("close"), qStringOf(OrientText::close)},
        {QStringLiteral("turnGroup"), qStringOf(OrientText::turnGroup)},
        {QStringLiteral("facingGroup"), qStringOf(OrientText::facingGroup)},
        {QStringLiteral("clearsResult"), qStringOf(OrientText::clearsResult)}};
}

QString OrientCardModel::angles() const {
    return qStringOf(OrientControls::angleText(rotation()));
}

QVariantList OrientCardModel::axes() const {
    struct Row {
        OrientationAxis axis;
        const char* name;
        Vec4 color;
    };
    const std::array rows{Row{OrientationAxis::x, "X", ViewportStyle::gizmoAxisX},
        Row{OrientationAxis::y, "Y", ViewportStyle::gizmoAxisY},
        Row{OrientationAxis::z, "Z", ViewportStyle::gizmoAxisZ}};
    QVariantList axes;
    for (const Row& row : rows) {
        QVariantList turns;
        for (const double sign : {1.0, -1.0}) {
            turns.append(QVariantMap{{QStringLiteral("sign"), sign},
                {QStringLiteral("symbol"), qStringOf(OrientControls::turnSymbol(sign))},
                {QStringLiteral("help"), qStringOf(OrientControls::turnHelp(row.axis, sign))}});
        }
        axes.append(QVariantMap{{QStringLiteral("axis"), static_cast<int>(row.axis)},
            {QStringLiteral("name"), QString::fromLatin1(row.name)},
            {QStringLiteral("color"), QColor::fromRgbF(row.color.r, row.color.g, row.color.b)},
            {QStringLiteral("turns"), turns}});
    }
    return axes;
}

QVariantList OrientCardModel::facings() const {
    QVariantList facings;
    for (const FacingAxis axis : allFacingAxes) {
        facings.append(QVariantMap{{QStringLiteral("facing"), static_cast<int>(axis)},
            {QStringLiteral("label"), qStringOf(OrientControls::label(axis))},
            {QStringLiteral("help"), qStringOf(OrientControls::facingHelp(axis))},
            {QStringLiteral("name"), qStringOf(OrientControls::facingName(axis))}});
    }
    return facings;
}

int OrientCardModel::facing() const {
    const auto axis = OrientControls::facing(rotation());
    return axis ? static_cast<int>(*axis) : -1;
}

bool OrientCardModel::clearsResult() const {
    return shared_.parameters.lastRunResult().has_value();
}

void OrientCardModel::turn(int axis, double sign) {
    if (axis >= 0 && axis < static_cast<int>(allOrientationAxes.size())) {
        OrientControls::apply(
            OrientControls::turned(rotation(), static_cast<OrientationAxis>(axis), sign),
            shared_.parameters);
    }
}

void OrientCardModel::face(int facing) {
    if (facing >= 0 && facing < static_cast<int>(allFacingAxes.size())) {
        OrientControls::apply(
            OrientControls::facingRotation(static_cast<FacingAxis>(facing)), shared_.parameters);
    }
}

void OrientCardModel::reset() {
    OrientControls::apply(glm::dvec3(0.0), shared_.parameters);
}

void OrientCardModel::finish() {
    if (shared_.renderSettings.orientMode()) {
        shared_.renderSettings.setOrientMode(false);
    }
}

} // namespace ostrella
