#include "Batch/PictureOptions.h"

#include "Batch/UsageError.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

namespace ostrella::PictureWords {

namespace {

/// A side of the picture; nothing for what is none.
std::optional<int> side(std::string_view word) {
    int value = 0;
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    if (error != std::errc() || stop != end || value < 1 || value > longestSide) {
        return std::nullopt;
    }
    return value;
}

} // namespace

void readSize(const std::string& word, PictureOptions& into) {
    const std::string_view text = word;
    const auto cross = text.find('x');
    const auto width = side(text.substr(0, cross));
    const auto height = cross == text.npos ? std::nullopt : side(text.substr(cross + 1));
    if (!width || !height) {
        throw UsageError(fmt::format("--size wants WIDTHxHEIGHT in pixels, each from 1 to {}, such "
                                     "as 1200x800, not \"{}\".",
            longestSide, word));
    }
    into.width = *width;
    into.height = *height;
}

void readView(const std::string& word, PictureOptions& into) {
    const auto view = viewPresetFromRawValue(word);
    if (!view) {
        throw UsageError(
            fmt::format("--view wants one of iso, front, side, top, not \"{}\".", word));
    }
    into.view = *view;
}

void readLook(const std::string& word, PictureOptions& into) {
    if (word != "glass" && word != "shaded") {
        throw UsageError(fmt::format("--look wants one of glass, shaded, not \"{}\".", word));
    }
    into.shaded = word == "shaded";
}

void readSamples(const std::string& word, PictureOptions& into) {
    if (word != "1" && word != "2" && word != "4" && word != "8") {
        throw UsageError(fmt::format("--samples wants one of 1, 2, 4, 8, not \"{}\".", word));
    }
    into.samples = word[0] - '0';
}

void readLayers(const std::string& word, PictureOptions& into) {
    into.layers = {false, false, false, false, false};
    if (word == "none") {
        return;
    }
    std::string_view rest = word;
    while (true) {
        const auto comma = rest.find(',');
        const std::string_view name = rest.substr(0, comma);
        const auto* const layer = std::find_if(allLayers.begin(), allLayers.end(),
            [name](const Layer& any) { return any.name == name; });
        if (layer == allLayers.end()) {
            throw UsageError(
                fmt::format("--layers wants names of cp, streams, vortex, grid, wireframe with "
                            "commas between them, or none, not \"{}\".",
                    word));
        }
        into.layers.*layer->toggle = true;
        if (comma == rest.npos) {
            return;
        }
        rest.remove_prefix(comma + 1);
    }
}

} // namespace ostrella::PictureWords
