#include "Batch/ResultsJSON.h"

namespace ostrella {

namespace {

Json figuresOf(const ResultFigures::Surface& surface) {
    Json json;
    json["points"] = surface.points;
    json["primitives"] = surface.primitives;
    json["kind"] = surface.primitive == SurfaceField::Primitive::triangle ? "triangle" : "line";
    json["cpMin"] = surface.pressureMin;
    json["cpMax"] = surface.pressureMax;
    return json;
}

Json figuresOf(const ScalarFieldStats& yPlus) {
    Json json;
    json["count"] = yPlus.count;
    json["min"] = yPlus.min;
    json["mean"] = yPlus.mean;
    json["p95"] = yPlus.p95;
    json["max"] = yPlus.max;
    return json;
}

Json figuresOf(std::size_t volumePoints) {
    Json json;
    json["points"] = volumePoints;
    return json;
}

Json figuresOf(const ResultFigures::Lines& lines) {
    Json json;
    json["seeds"] = lines.seeds;
    json["vertices"] = lines.vertices;
    json["segments"] = lines.segments;
    json["lines"] = lines.lines;
    json["speedMin_m_s"] = lines.speedMin;
    json["speedMax_m_s"] = lines.speedMax;
    json["sha256"] = lines.sha256;
    return json;
}

Json figuresOf(const ResultFigures::Ribbons& ribbons) {
    Json json;
    json["points"] = ribbons.points;
    json["triangles"] = ribbons.triangles;
    json["sha256"] = ribbons.sha256;
    return json;
}

Json figuresOf(const ResultFigures::Vortex& vortex) {
    Json json;
    json["vertices"] = vortex.vertices;
    json["triangles"] = vortex.triangles;
    json["isoValue"] = vortex.isoValue;
    json["sha256"] = vortex.sha256;
    return json;
}

template <class Part>
Json partOrNull(const std::optional<Part>& part) {
    return part ? figuresOf(*part) : Json();
}

} // namespace

Json resultsOf(const ResultFigures& figures) {
    Json json;
    json["surface"] = partOrNull(figures.surface);
    json["yPlus"] = partOrNull(figures.harvest.yPlus);
    json["volume"] = partOrNull(figures.volumePoints);
    json["streamlines"] = partOrNull(figures.streamlines);
    json["ribbons"] = partOrNull(figures.ribbons);
    json["vortex"] = partOrNull(figures.vortex);
    Json& times = json["times_s"];
    times["surface"] = orNull(figures.harvest.surfaceSeconds);
    times["yPlus"] = orNull(figures.harvest.wallReportSeconds);
    times["volume"] = orNull(figures.harvest.volumeSeconds);
    times["streamlines"] = orNull(figures.harvest.streamlinesSeconds);
    times["vortex"] = orNull(figures.harvest.vortexSeconds);
    return json;
}

} // namespace ostrella
