#include "Batch/SurfaceJSON.h"

#include "Models/SurfaceDefects.h"

namespace ostrella {

namespace {

Json placesOf(const SurfaceDefect& defect) {
    Json json;
    json["count"] = defect.count;
    json["places"] = Json::array();
    for (const Vec3& place : defect.places) {
        json["places"].push_back(Json::array({place.x, place.y, place.z}));
    }
    return json;
}

Json fitnessOf(const SurfaceFitness& fitness) {
    Json json;
    json["fit"] = fitness.isFit();
    json["facets"] = fitness.facets;
    json["shells"] = fitness.shells;
    for (const SurfaceDefectKind& kind : surfaceDefectKinds) {
        json[std::string(kind.name)] = placesOf(fitness.*kind.defect);
    }
    json["cutShort"] = fitness.isCutShort;
    json["extent_m"] = fitness.extent;
    json["shortestEdge_m"] = fitness.shortestEdge;
    json["medianEdge_m"] = fitness.medianEdge;
    json["longestEdge_m"] = fitness.longestEdge;
    json["volume_m3"] = fitness.volume;
    json["area_m2"] = fitness.area;
    return json;
}

Json preparationOf(const SurfacePreparation& facts) {
    Json json;
    json["facets"] = facts.facets;
    json["bodies"] = facts.bodies;
    json["smallBodies"] = facts.smallBodies;
    json["deviation_m"] = facts.deviation;
    json["openingsClosed"] = facts.openingsClosed;
    json["sheetsThickened"] = facts.sheetsThickened;
    json["shellsRemoved"] = facts.shellsRemoved;
    json["gapWidth_m"] = facts.gapWidth;
    json["sheetThickness_m"] = facts.sheetThickness;
    json["shortestEdge_m"] = facts.shortestEdge;
    json["medianEdge_m"] = facts.medianEdge;
    json["longestEdge_m"] = facts.longestEdge;
    return json;
}

Json qualityOf(const MeshQuality& quality) {
    Json json;
    json["leastGamma"] = quality.leastGamma;
    json["firstPercentileGamma"] = quality.firstPercentileGamma;
    json["invertedCells"] = quality.inverted;
    return json;
}

} // namespace

Json surfaceOf(const BatchReport& report) {
    if (!report.surface) {
        return {};
    }
    const SurfaceFacts& surface = *report.surface;
    Json json;
    json["choice"] = rawValue(report.options.surface);
    json["road"] = Json();
    json["fitness"] = surface.fitness ? fitnessOf(*surface.fitness) : Json();
    json["preparation"] = Json();
    if (surface.meshed) {
        json["road"] = surface.meshed->preparation ? "prepared" : "as-is";
        if (surface.meshed->preparation) {
            json["preparation"] = preparationOf(*surface.meshed->preparation);
        }
    }
    json["meshQuality"] = surface.quality ? qualityOf(*surface.quality) : Json();
    json["file"] = surface.file ? Json(surface.file->string()) : Json();
    return json;
}

} // namespace ostrella
