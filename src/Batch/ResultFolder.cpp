#include "Batch/ResultFolder.h"

#include "Models/OrdinaryFile.h"
#include "Solver/Flow/FlowScreen.h"
#include "Solver/Tools/SU2Output.h"

#include <algorithm>
#include <charconv>
#include <span>
#include <string_view>
#include <type_traits>

namespace ostrella::ResultFolder {

namespace fs = std::filesystem;

namespace {

std::optional<SU2Output::MeshHeader> meshHeader(
    const fs::path& folder, const std::optional<std::string>& meshFilename) {
    const fs::path mesh = folder / meshFilename.value_or("mesh.su2");
    std::error_code error;
    return fs::is_regular_file(mesh, error) ? SU2Output::readMeshHeader(mesh) : std::nullopt;
}

/// What `read` gives of a file; nothing where it cannot be read.
template <class Read>
auto ifReadable(Read&& read) -> std::optional<std::invoke_result_t<Read&>> {
    try {
        return read();
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

template <class Field>
bool isFlat(const Field& field) {
    return field.boundingMin.z == field.boundingMax.z;
}

bool isWhiteSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// A file as words between white space, read piece by piece.
class Words {
public:
    explicit Words(const fs::path& path) : file_(path) {}

    /// Moves behind the next word that equals `wanted`; false if there is none.
    bool skipTo(std::string_view wanted) {
        while (true) {
            const std::size_t found = buffer_.find(wanted, at_);
            const bool isWhole =
                found != std::string::npos && found + wanted.size() < buffer_.size();
            if (isWhole) {
                at_ = found + wanted.size();
                if (isWhiteSpace(buffer_[at_]) &&
                    (found == 0 || isWhiteSpace(buffer_[found - 1]))) {
                    return true;
                }
            } else if (!readMore(wanted.size() + 1)) {
                return false;
            }
        }
    }

    /// The next word, at most as long as a number; empty at the end.
    std::string_view next() {
        constexpr std::size_t longest = 64;
        while (true) {
            while (at_ < buffer_.size() && isWhiteSpace(buffer_[at_])) {
                ++at_;
            }
            const bool isRead = buffer_.size() - at_ >= longest || !readMore(longest);
            if (isRead && at_ < buffer_.size()) {
                const std::string_view rest = std::string_view(buffer_).substr(at_);
                const auto* const end = std::find_if(rest.begin(), rest.end(), isWhiteSpace);
                return rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
            }
            if (isRead) {
                return {};
            }
        }
    }

private:
    /// Drops what lies behind, but for the last `kept` bytes, and reads the next piece.
    bool readMore(std::size_t kept) {
        constexpr std::size_t pieceSize = std::size_t{1} << 20;
        const std::size_t start =
            std::max(at_, buffer_.size() > kept ? buffer_.size() - kept : std::size_t{0});
        buffer_.erase(0, start);
        at_ = 0;
        const std::size_t before = buffer_.size();
        buffer_.resize(before + pieceSize);
        const std::size_t count =
            file_.read(std::as_writable_bytes(std::span(buffer_).subspan(before)));
        buffer_.resize(before + count);
        return count > 0;
    }

    OrdinaryFile file_;
    std::string buffer_;
    std::size_t at_ = 0;
};

} // namespace

std::optional<int> dimensions(
    const fs::path& folder, const std::optional<std::string>& meshFilename) {
    if (const auto header = meshHeader(folder, meshFilename);
        header && (header->dimensions == 2 || header->dimensions == 3)) {
        return header->dimensions;
    }
    const auto surface = ifReadable([&folder] {
        return FlowScreen::parseSurface(folder / "surface_flow.vtk", "Pressure_Coefficient");
    });
    if (surface && !surface->positions.empty()) {
        if (surface->primitive == SurfaceField::Primitive::triangle || !isFlat(*surface)) {
            return 3;
        }
    }
    const auto volume =
        ifReadable([&folder] { return FlowScreen::parseVolume(folder / "flow.vtk", "Velocity"); });
    if (volume && !volume->positions.empty()) {
        return isFlat(*volume) ? 2 : 3;
    }
    return surface ? std::optional(2) : std::nullopt;
}

std::optional<std::int64_t> cells(
    const fs::path& folder, const std::optional<std::string>& meshFilename) {
    if (const auto header = meshHeader(folder, meshFilename)) {
        return header->elements;
    }
    return cellsInVTK(folder / "flow.vtk");
}

std::optional<std::int64_t> cellsInVTK(const fs::path& file) {
    return ifReadable([&file]() -> std::optional<std::int64_t> {
        Words words(file);
        if (!words.skipTo("POINTS") || !words.skipTo("CELLS")) {
            return std::nullopt;
        }
        const std::string_view word = words.next();
        std::int64_t count = 0;
        const char* const end = word.data() + word.size();
        const auto read = std::from_chars(word.data(), end, count);
        return read.ec == std::errc() && read.ptr == end && count >= 0 ? std::optional(count)
                                                                       : std::nullopt;
    }).value_or(std::nullopt);
}

} // namespace ostrella::ResultFolder
