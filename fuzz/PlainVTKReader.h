#pragma once

#include "Solver/Flow/VTKLegacyParser.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella::fuzz {

/// A reader of legacy VTK files as plain as can be, with a list of words and a cursor into it:
/// slow, and obviously right. The fast reader must give what it gives, to the last bit and word.
class PlainVTKReader {
public:
    /// Takes valid UTF-8.
    explicit PlainVTKReader(std::string_view text);

    // What comes of a file: numbers, or the text of the failure. The text begins with "impossible"
    // where a count or an id ends the process unless it is screened.
    struct Surface {
        std::vector<float> positions;
        std::vector<float> scalar;
        std::vector<std::uint32_t> indices;
        std::int64_t firstCellType = 3;
        std::string failure;
    };
    struct Volume {
        std::vector<float> positions;
        std::vector<float> velocity;
        std::string failure;
    };
    struct Stats {
        ScalarFieldStats stats;
        std::string failure;
    };
    Surface surface(const std::string& scalarName);
    Volume volume(const std::string& vectorName);
    Stats stats(const std::string& scalarName);

    /// The words of the text.
    const std::vector<std::string>& words() const { return words_; }

private:
    struct Geometry {
        std::vector<float> positions;
        std::vector<std::uint32_t> indices;
        std::int64_t firstCellType = 3;
    };

    std::int64_t readInt();
    std::int64_t readNatural();
    float readFloat();
    void seek(const std::string& keyword);
    void requireHeader() const;
    Geometry readGeometry();
    std::vector<float> readScalar(const std::string& name, std::int64_t count);
    std::vector<float> readVector(const std::string& name, std::int64_t count);
    bool seekField(const std::string& keyword, const std::string& name);

    std::vector<std::string> words_;
    std::size_t cursor_ = 0;
};

} // namespace ostrella::fuzz
