#include "Solver/Run/SurfaceMeshing.h"

#include "Solver/Geometry/SolverFrame.h"
#include "Solver/Run/HarvestTexts.h"
#include "Solver/Run/SolverLaunch.h"
#include "Solver/Run/SurfaceTexts.h"
#include "Solver/Surface/SurfaceJudge.h"
#include "Solver/Tools/FilesAside.h"
#include "Solver/Tools/TimeLimit.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace ostrella {

namespace {

/// A prepared surface has edges from the one asked for to twice of that, and a median between.
constexpr float medianPerLeastEdge = 1.4F;

} // namespace

float preparedFacetEdge(
    const std::optional<SurfaceFitness>& fitness, const GMSHRunner::FarField& field) {
    // A body under a millimetre has lcMin above its extent, which is lcMax; a point has no extent.
    const float wanted = field.lcMax > 0 ? std::min(field.lcMin, field.lcMax) : field.lcMin;
    // What the mesher would keep as they are: the same bounds as those of its own road.
    const bool even = fitness && fitness->slivers.count == 0 &&
                      fitness->degenerateFacets.count == 0 && fitness->longestEdge <= 4 * wanted &&
                      fitness->medianEdge >= wanted / 4;
    if (!even) {
        return wanted;
    }
    return std::clamp(fitness->medianEdge / medianPerLeastEdge, wanted / 4, wanted);
}

SurfaceMeshing::SurfaceMeshing(const Setting& setting, TriangleMesh model, TriangleMesh body)
    : setting_(setting),
      model_(std::move(model)),
      body_(std::move(body)),
      mesher_(setting.environment) {}

MeshedModel SurfaceMeshing::run() {
    // Told ahead of all work that would be for nothing.
    static_cast<void>(mesher_.mesher());
    judge();
    MeshedModel meshed;
    try {
        meshed.mesh = meshByChoice();
    } catch (const GMSHError& error) {
        if (error.isOfSurface() && fitness_ && !fitness_->isFit()) {
            setting_.log.warn(worstDefectSentence(*fitness_));
        }
        throw;
    }
    meshed.fitness = std::move(fitness_);
    if (prepared_) {
        meshed.prepared = SolverFrame::toSolver(prepared_->mesh);
    }
    return meshed;
}

void SurfaceMeshing::judge() {
    const Date start = setting_.environment.clock->now();
    const bool decides = setting_.environment.surface == SurfaceChoice::automatic;
    const double seconds = decides ? longestJudging : longestJudgingAside;
    const TimeLimit limit(setting_.token, seconds, *setting_.environment.timers);
    std::string reason;
    try {
        fitness_ = judgeSurface(model_, limit.token());
    } catch (const CancellationError&) {
        if (!limit.isOver()) {
            throw;
        }
        reason = SurfaceTexts::notJudgedWithin(seconds);
    } catch (const std::exception&) {
        // No run fails for what is told about it beside.
        reason = SurfaceTexts::notJudged(
            HarvestTexts::reason(std::current_exception(), "judging the surface"));
    }
    seconds_ += secondsBetween(start, setting_.environment.clock->now());
    if (!fitness_) {
        setting_.log.warn(reason);
        return;
    }
    setting_.log.append(
        fitnessLine(*fitness_), fitness_->isFit() ? LogStore::Level::info : LogStore::Level::warn);
    sendEvent(setting_.events, *fitness_);
}

GMSHRunner::Output SurfaceMeshing::meshByChoice() {
    switch (setting_.environment.surface) {
    case SurfaceChoice::asIs:
        return meshAsItIs(std::nullopt);
    case SurfaceChoice::prepared:
        prepare();
        return meshPrepared(false);
    case SurfaceChoice::automatic:
        break;
    }
    return meshAutomatically();
}

GMSHRunner::Output SurfaceMeshing::meshAutomatically() {
    std::exception_ptr firstFailure;
    std::optional<GMSHRunner::Output> asItIs;
    if (fitness_ && fitness_->isFit()) {
        try {
            asItIs = meshAsItIs(longestAttempt);
        } catch (const GMSHError& error) {
            if (!error.isOfSurface()) {
                throw;
            }
            setting_.log.warn(SurfaceTexts::noMeshAsItIs(error.what()));
            firstFailure = std::current_exception();
        }
    }
    if (asItIs) {
        return quality_ && !quality_->isSound() ? betterThan(*asItIs) : *asItIs;
    }
    if (!tryToPrepare()) {
        if (!firstFailure) {
            return meshAsItIs(longestAttempt);
        }
        std::rethrow_exception(firstFailure);
    }
    try {
        return meshPrepared(firstFailure != nullptr);
    } catch (const GMSHError& error) {
        if (!firstFailure || !error.isOfSurface()) {
            throw;
        }
        setting_.log.warn(SurfaceTexts::noMeshPrepared(error.what()));
    }
    std::rethrow_exception(firstFailure);
}

GMSHRunner::Output SurfaceMeshing::meshAsItIs(std::optional<double> timeLimit) {
    report(model_, std::nullopt);
    return measured(mesher_.makeMesh(
        body_, setting_.directory, setting_.log, setting_.token, {.timeLimit = timeLimit}));
}

GMSHRunner::Output SurfaceMeshing::meshPrepared(bool isFurther, double timeLimit) {
    report(prepared_->mesh, prepared_->facts);
    return measured(mesher_.makeMesh(body_, setting_.directory, setting_.log, setting_.token,
        {.prepared = SolverFrame::toSolver(prepared_->mesh),
            .facetEdge = facetEdge_,
            .timeLimit = timeLimit,
            .isFurther = isFurther}));
}

GMSHRunner::Output SurfaceMeshing::measured(GMSHRunner::Output mesh) {
    quality_ = readMeshQuality(mesh.meshURL, setting_.token);
    if (quality_) {
        sendEvent(setting_.events, *quality_);
    }
    return mesh;
}

/// Makes another mesh, around the prepared surface, where that of the surface as it is has cells
/// that a solver may diverge on, and gives the better one of the two.
GMSHRunner::Output SurfaceMeshing::betterThan(const GMSHRunner::Output& asItIs) {
    const MeshQuality first = quality_.value();
    setting_.log.warn(SurfaceTexts::poorCells(first));
    quality_.reset();
    if (tryToPrepare()) {
        FilesAside aside(setting_.directory, GMSHRunner::filenames);
        try {
            // A mesh is there already, so this one has no more time than that had.
            GMSHRunner::Output second = meshPrepared(true, longestAttempt);
            if (quality_ && quality_->isBetterThan(first)) {
                aside.drop();
                return second;
            }
        } catch (const CancellationError&) {
            throw;
        } catch (const std::exception&) {
            // Whatever it was, a full disk too: there is a mesh.
            setting_.log.warn(SurfaceTexts::noMeshPrepared(
                HarvestTexts::reason(std::current_exception(), "meshing the prepared surface")));
        }
        aside.putBack();
    }
    setting_.log.info(SurfaceTexts::keptAsItIs(quality_));
    prepared_.reset();
    report(model_, std::nullopt);
    quality_ = first;
    sendEvent(setting_.events, first);
    return asItIs;
}

void SurfaceMeshing::prepare() {
    const Date start = setting_.environment.clock->now();
    const auto field = GMSHRunner::farField(body_.boundingMin(), body_.boundingMax());
    facetEdge_ = preparedFacetEdge(fitness_, field);
    const TimeLimit limit(setting_.token, longestPreparing, *setting_.environment.timers);
    try {
        prepared_ = prepareSurface(model_, facetEdge_, limit.token());
    } catch (const CancellationError&) {
        if (!limit.isOver()) {
            throw;
        }
        throw PreparationError(SurfaceTexts::notPreparedWithin(longestPreparing));
    } catch (const std::exception&) {
        throw PreparationError(
            HarvestTexts::reason(std::current_exception(), "preparing the surface"));
    }
    seconds_ += secondsBetween(start, setting_.environment.clock->now());
    auto [text, level] = SurfaceTexts::prepared(prepared_->facts);
    setting_.log.append(std::move(text), level);
}

bool SurfaceMeshing::tryToPrepare() {
    try {
        prepare();
        return true;
    } catch (const PreparationError& error) {
        if (fitness_ && fitness_->degenerateFacets.count == fitness_->facets) {
            // Without any area there is nothing to try either: that is the sentence to end with.
            throw;
        }
        setting_.log.warn(SurfaceTexts::notPrepared(error.what()));
        return false;
    }
}

void SurfaceMeshing::report(
    const TriangleMesh& surface, std::optional<SurfacePreparation> preparation) const {
    sendEvent(setting_.events, MeshedSurface{surface, preparation, seconds_});
}

} // namespace ostrella
