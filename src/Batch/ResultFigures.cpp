#include "Batch/ResultFigures.h"

#include "Solver/Flow/StreamlineRibbons.h"
#include "Solver/Run/HarvestTexts.h"

#include <QByteArray>
#include <QCryptographicHash>

#include <span>

namespace ostrella {

namespace {

class Fingerprint {
public:
    template <class T>
    void add(std::span<const T> values) {
        hash_.addData(QByteArrayView(reinterpret_cast<const char*>(values.data()),
            static_cast<qsizetype>(values.size_bytes())));
    }
    std::string text() const { return hash_.result().toHex().toStdString(); }

private:
    QCryptographicHash hash_{QCryptographicHash::Sha256};
};

ResultFigures::Surface figuresOf(const SurfaceField& field) {
    return {field.positions.size(), HarvestTexts::primitiveCount(field), field.primitive,
        field.scalarMin, field.scalarMax};
}

ResultFigures::Lines figuresOf(const Streamlines& lines, std::size_t lineCount) {
    Fingerprint fingerprint;
    fingerprint.add(lines.interleavedVertices.span());
    fingerprint.add(lines.indices.span());
    return {lines.seedCount, lines.vertexCount, lines.indexCount / 2, lineCount, lines.magnitudeMin,
        lines.magnitudeMax, fingerprint.text()};
}

ResultFigures::Ribbons figuresOf(const StreamlineRibbons& ribbons) {
    Fingerprint fingerprint;
    fingerprint.add(std::span<const StreamlineRibbons::Point>(ribbons.points));
    fingerprint.add(std::span<const std::uint32_t>(ribbons.indices));
    return {ribbons.points.size(), ribbons.indices.size() / 3, fingerprint.text()};
}

ResultFigures::Vortex figuresOf(const IsoSurface& vortex) {
    Fingerprint fingerprint;
    fingerprint.add(vortex.positions.span());
    fingerprint.add(vortex.normals.span());
    fingerprint.add(vortex.indices.span());
    return {
        vortex.positions.size(), vortex.indices.size() / 3, vortex.isoValue, fingerprint.text()};
}

} // namespace

ResultFigures ResultFigures::of(const SimulationResult& result) {
    ResultFigures figures;
    figures.harvest = result.figures;
    if (result.surfaceField) {
        figures.surface = figuresOf(*result.surfaceField);
    }
    if (result.volumeField) {
        figures.volumePoints = result.volumeField->positions.size();
    }
    if (result.streamlines) {
        const auto ribbons = StreamlineRibbons::build(*result.streamlines);
        figures.streamlines = figuresOf(*result.streamlines, ribbons.lineCount);
        figures.ribbons = figuresOf(ribbons);
    }
    if (result.vortex) {
        figures.vortex = figuresOf(*result.vortex);
    }
    return figures;
}

} // namespace ostrella
