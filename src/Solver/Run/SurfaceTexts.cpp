#include "Solver/Run/SurfaceTexts.h"

#include <fmt/format.h>

#include <array>
#include <cmath>

namespace ostrella::SurfaceTexts {

namespace {

/// Facets facing up may exceed the prepared surface's by this much before they are worth a word.
constexpr double hiddenShare = 1.05;

std::string counted(std::int64_t count, std::string_view one, std::string_view more) {
    return fmt::format("{} {}", LogStore::grouped(count), count == 1 ? one : more);
}

/// What is the matter with the cells: how many are inverted, else how flat one is.
std::string defect(const MeshQuality& quality) {
    return quality.inverted > 0 ? counted(quality.inverted, "cell inside out", "cells inside out")
                                : fmt::format("cells as flat as {:.4f}", quality.leastGamma);
}

} // namespace

std::string length(double metres) {
    struct Unit {
        std::string_view name;
        double metres;
    };
    constexpr std::array<Unit, 5> units{
        {{"nm", 1e-9}, {"µm", 1e-6}, {"mm", 1e-3}, {"m", 1}, {"km", 1e3}}};
    constexpr double withoutDecimals = 99.95;
    constexpr double nextUnit = 999.5;
    if (metres == 0) {
        return "0 mm";
    }
    const Unit* unit = units.data();
    while (unit != &units.back() && std::abs(metres) / unit->metres >= nextUnit) {
        ++unit;
    }
    const double value = metres / unit->metres;
    return std::abs(value) < withoutDecimals ? fmt::format("{:.1f} {}", value, unit->name)
                                             : fmt::format("{:.0f} {}", value, unit->name);
}

Line prepared(const SurfacePreparation& facts) {
    std::string text = fmt::format("Surface prepared for meshing · {} · within {} of the model",
        counted(facts.facets, "facet", "facets"), length(facts.deviation));
    if (facts.shellsRemoved > 0) {
        text += fmt::format(
            " · {} left out", counted(facts.shellsRemoved, "hidden shell", "hidden shells"));
    }
    if (facts.openingsClosed > 0) {
        text += fmt::format(" · {} closed", counted(facts.openingsClosed, "opening", "openings"));
    }
    if (facts.sheetsThickened > 0) {
        text += fmt::format(" · {} thickened to {}",
            counted(facts.sheetsThickened, "sheet", "sheets"), length(facts.sheetThickness));
    }
    if (facts.smallBodies > 0) {
        text += fmt::format(
            " · {} too small for the facets", counted(facts.smallBodies, "body", "bodies"));
    }
    const bool changed =
        facts.openingsClosed > 0 || facts.sheetsThickened > 0 || facts.smallBodies > 0;
    return {text, changed ? LogStore::Level::warn : LogStore::Level::info};
}

std::string notPreparedWithin(double seconds) {
    return fmt::format(
        "Preparing the surface takes longer than {:.0f} s. Simplify the model and load it again.",
        seconds);
}

std::string notPrepared(std::string_view sentence) {
    return fmt::format("Surface not prepared · {}", sentence);
}

std::string notJudged(std::string_view reason) {
    return fmt::format("Surface not judged · {}", reason);
}

std::string notJudgedWithin(double seconds) {
    return fmt::format("Surface not judged · that takes longer than {:.0f} s", seconds);
}

std::string noMeshAsItIs(std::string_view failure) {
    return fmt::format("No mesh of the surface as it is · {}", failure);
}

std::string noMeshPrepared(std::string_view failure) {
    return fmt::format("No mesh of the prepared surface · {}", failure);
}

std::string poorCells(const MeshQuality& quality) {
    std::string what = defect(quality);
    what.front() = what.front() == 'c' ? 'C' : what.front();
    return fmt::format("{} around the surface as it is · a solver may diverge there, so it is "
                       "prepared",
        what);
}

std::string keptAsItIs(const std::optional<MeshQuality>& other) {
    std::string text = "Mesh of the surface as it is kept";
    return other ? fmt::format("{} · {} around the prepared one", text, defect(*other)) : text;
}

std::optional<Line> planformTrust(const SurfaceFitness& fitness, const Planform& planform) {
    const bool open = fitness.openEdges.count > 0;
    if (open || fitness.inconsistentEdges.count > 0) {
        std::string text =
            fmt::format("Reference area of a model {} · {:.4f} m² face up and {:.4f} m² down",
                open ? "that is not closed" : "whose facets disagree on the outside", planform.up,
                planform.down);
        if (planform.prepared) {
            text += fmt::format(", the prepared surface has {:.4f} m²", *planform.prepared);
        }
        text += " · coefficients are as uncertain as these differ";
        return Line(text, LogStore::Level::warn);
    }
    // Shells inside of others and parts of shells that others cover face up as well.
    if (planform.prepared && planform.up > hiddenShare * *planform.prepared) {
        return Line(fmt::format("Reference area counts hidden facets too · {:.4f} m² face up, the "
                                "prepared surface has {:.4f} m²",
                        planform.up, *planform.prepared),
            LogStore::Level::warn);
    }
    if (fitness.insideOutShells.count > 0) {
        return Line("Reference area of a model that is inside out · measured on its underside, "
                    "which is the same for a closed surface",
            LogStore::Level::info);
    }
    return std::nullopt;
}

} // namespace ostrella::SurfaceTexts
