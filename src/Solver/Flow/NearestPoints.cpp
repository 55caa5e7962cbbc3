#include "Solver/Flow/NearestPoints.h"

#include "Solver/Flow/LeastKeys.h"

#include <algorithm>

namespace ostrella {

namespace {

constexpr float farthest = std::numeric_limits<float>::infinity();

// A key is a double whose upper half is the distance's bits, which sort like the distance, and
// whose lower half is the number in the list. One is added to the exponent so that no key is
// subnormal; even that of an infinite distance is a finite number.
constexpr std::uint32_t normal = 0x00100000;
constexpr double lastKey = std::numeric_limits<double>::max();

double keyOf(float dist2, std::uint32_t number) {
    const std::uint64_t upper = std::bit_cast<std::uint32_t>(dist2) + normal;
    return std::bit_cast<double>(upper << 32 | number);
}

void unpack(const double (&least)[NearestPoints::most], NearestPoints& found) {
    for (std::size_t i = 0; i < NearestPoints::most; ++i) {
        const auto key = std::bit_cast<std::uint64_t>(least[i]);
        found.places[i] = static_cast<std::int32_t>(key);
        found.dist2[i] = std::bit_cast<float>(static_cast<std::uint32_t>(key >> 32) - normal);
    }
}

/// The bound that a list gives by itself: each of eight lanes has its least distance, and so eight
/// points lie no farther than the greatest of these.
float boundOf(float* dist2, std::size_t distances) {
    for (std::size_t i = distances; i % 8 != 0; ++i)
        dist2[i] = farthest;
    Float4 a = loadVector<Float4>(dist2);
    Float4 b = loadVector<Float4>(dist2 + 4);
    for (std::size_t i = 8; i < distances; i += 8) {
        a = lesser(a, loadVector<Float4>(dist2 + i));
        b = lesser(b, loadVector<Float4>(dist2 + i + 4));
    }
    const Float4 g = greater(a, b);
    return std::max(std::max(g[0], g[1]), std::max(g[2], g[3]));
}

/// All of a list of up to 32.
void chooseAmongFew(float* dist2, std::size_t distances, NearestPoints& found) {
    alignas(16) double keys[32];
    alignas(16) double least[NearestPoints::most];
    const std::size_t padded = distances <= 16 ? 16 : 32;
    for (std::size_t i = distances; i < padded; i += 4)
        storeVector(dist2 + i, allLanes(farthest));
    Int4 number{0, 1, 2, 3};
    for (std::size_t i = 0; i < padded; i += 4) {
        const Int4 bits = loadVector<Int4>(dist2 + i) + static_cast<std::int32_t>(normal);
        storeVector(keys + i, __builtin_shufflevector(number, bits, 0, 4, 1, 5));
        storeVector(keys + i + 2, __builtin_shufflevector(number, bits, 2, 6, 3, 7));
        number += 4;
    }
    if (padded == 16)
        LeastKeys::of16(keys, least);
    else
        LeastKeys::of32(keys, least);
    unpack(least, found);
}

/// One after the other: for many points at almost the same distance.
void insertOneByOne(const float* dist2, std::size_t distances, float bound, NearestPoints& found) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < distances; ++i) {
        if (dist2[i] > bound ||
            (kept == NearestPoints::most && !(dist2[i] < found.dist2[kept - 1])))
            continue;
        std::size_t at = kept < NearestPoints::most ? kept++ : kept - 1;
        for (; at > 0 && found.dist2[at - 1] > dist2[i]; --at) {
            found.dist2[at] = found.dist2[at - 1];
            found.places[at] = found.places[at - 1];
        }
        found.dist2[at] = dist2[i];
        found.places[at] = static_cast<std::int32_t>(i);
    }
}

/// Those of a long list that do not exceed the bound.
void chooseWithin(float* dist2, std::size_t distances, float bound, NearestPoints& found) {
    const std::size_t padded = (distances + 31) / 32 * 32;
    for (std::size_t i = distances; i < padded; i += 4)
        storeVector(dist2 + i, allLanes(farthest));
    alignas(16) double keys[64];
    alignas(16) double least[NearestPoints::most];
    const Float4 limit = allLanes(bound);
    std::size_t count = 0;
    for (std::size_t i = 0; i < distances; i += 32) {
        std::uint32_t within = 0;
        for (std::size_t lane = 0; lane < 32; lane += 4)
            within |= laneBits(loadVector<Float4>(dist2 + i + lane) <= limit) << lane;
        for (; within != 0; within &= within - 1) {
            const std::size_t number = i + static_cast<std::size_t>(std::countr_zero(within));
            keys[count++] = keyOf(dist2[number], static_cast<std::uint32_t>(number));
        }
        if (count > 32) {
            insertOneByOne(dist2, distances, bound, found);
            return;
        }
    }
    if (count <= 16) {
        std::fill(keys + count, keys + 16, lastKey);
        LeastKeys::of16(keys, least);
    } else {
        std::fill(keys + count, keys + 32, lastKey);
        LeastKeys::of32(keys, least);
    }
    unpack(least, found);
}

} // namespace

void chooseNearest(
    float* dist2, std::size_t distances, std::size_t count, NearestPoints& found, float bound) {
    found.count = count;
    if (distances <= 16 || (distances <= 32 && bound == farthest))
        chooseAmongFew(dist2, distances, found);
    else
        chooseWithin(
            dist2, distances, bound == farthest ? boundOf(dist2, distances) : bound, found);
}

} // namespace ostrella
