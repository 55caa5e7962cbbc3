#include "fuzz/PlainVTKReader.h"

#include <algorithm>
#include <cerrno>
#include <cfloat>
#include <clocale>
#include <cmath>
#include <cstdlib>

#include <locale.h>

namespace ostrella::fuzz {

namespace {

struct Failure {
    std::string text;
};

const std::string impossible = "impossible";

bool isWhiteSpace(unsigned code) {
    for (const unsigned one :
        {0x20U, 0x85U, 0xA0U, 0x1680U, 0x2028U, 0x2029U, 0x202FU, 0x205FU, 0x3000U})
        if (code == one)
            return true;
    return (code >= 0x9 && code <= 0xD) || (code >= 0x2000 && code <= 0x200A);
}

std::vector<std::string> split(std::string_view text) {
    std::vector<std::string> words;
    std::string word;
    const auto end = [&] {
        if (!word.empty())
            words.push_back(word);
        word.clear();
    };
    for (std::size_t at = 0; at < text.size();) {
        const auto lead = static_cast<unsigned char>(text[at]);
        const std::size_t size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        unsigned code = size == 1 ? lead : lead & (0xFFU >> (size + 1));
        for (std::size_t i = 1; i < size; ++i)
            code = code << 6 | (static_cast<unsigned char>(text[at + i]) & 0x3FU);
        if (isWhiteSpace(code))
            end();
        else
            word += text.substr(at, size);
        at += size;
    }
    end();
    return words;
}

bool isInt(const std::string& word) {
    const std::size_t sign = word[0] == '+' || word[0] == '-' ? 1 : 0;
    if (word.size() == sign || word.find_first_not_of("0123456789", sign) != std::string::npos)
        return false;
    errno = 0;
    std::strtoll(word.c_str(), nullptr, 10);
    return errno == 0;
}

/// What `read` gives, or its failure.
template <class Result, class Read>
Result outcome(Read read) {
    try {
        return read();
    } catch (const Failure& failure) {
        Result result;
        result.failure = failure.text;
        return result;
    }
}

} // namespace

PlainVTKReader::PlainVTKReader(std::string_view text) : words_(split(text)) {}

std::int64_t PlainVTKReader::readInt() {
    if (cursor_ >= words_.size() || !isInt(words_[cursor_]))
        throw Failure{"Malformed VTK: expected int at token " + std::to_string(cursor_)};
    return std::strtoll(words_[cursor_++].c_str(), nullptr, 10);
}

std::int64_t PlainVTKReader::readNatural() {
    const std::int64_t number = readInt();
    if (number < 0)
        throw Failure{impossible + " at token " + std::to_string(cursor_ - 1)};
    return number;
}

float PlainVTKReader::readFloat() {
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    if (cursor_ < words_.size()) {
        const std::string& word = words_[cursor_];
        char* end = nullptr;
        const float value = strtof_l(word.c_str(), &end, plain);
        if (end == word.c_str() + word.size()) {
            ++cursor_;
            return value;
        }
    }
    throw Failure{"Malformed VTK: expected float at token " + std::to_string(cursor_)};
}

void PlainVTKReader::seek(const std::string& keyword) {
    while (cursor_ < words_.size() && words_[cursor_] != keyword)
        ++cursor_;
    if (cursor_ >= words_.size())
        throw Failure{"Malformed VTK: " + keyword + " not found"};
    ++cursor_;
}

void PlainVTKReader::requireHeader() const {
    if (words_.size() < 6 || std::count(words_.begin(), words_.end(), "ASCII") == 0 ||
        std::count(words_.begin(), words_.end(), "UNSTRUCTURED_GRID") == 0)
        throw Failure{"Not a legacy ASCII VTK file."};
}

PlainVTKReader::Geometry PlainVTKReader::readGeometry() {
    Geometry geometry;
    seek("POINTS");
    const std::int64_t points = readNatural();
    ++cursor_;
    for (std::int64_t i = 0; i < points; ++i)
        for (int axis = 0; axis < 3; ++axis)
            geometry.positions.push_back(readFloat());
    seek("CELLS");
    const std::int64_t cells = readNatural();
    ++cursor_;
    for (std::int64_t cell = 0; cell < cells; ++cell) {
        const std::int64_t corners = readNatural();
        for (std::int64_t corner = 0; corner < corners; ++corner) {
            const std::int64_t id = readNatural();
            if (id > 4294967295)
                throw Failure{impossible + " at token " + std::to_string(cursor_ - 1)};
            geometry.indices.push_back(static_cast<std::uint32_t>(id));
        }
    }
    seek("CELL_TYPES");
    const std::int64_t types = readNatural();
    for (std::int64_t i = 0; i < types; ++i) {
        const std::int64_t type = readInt();
        if (i == 0)
            geometry.firstCellType = type;
    }
    return geometry;
}

bool PlainVTKReader::seekField(const std::string& keyword, const std::string& name) {
    for (; cursor_ + 1 < words_.size(); ++cursor_)
        if (words_[cursor_] == keyword && words_[cursor_ + 1] == name)
            return cursor_ + 1 != words_.size() - 1;
    return false;
}

std::vector<float> PlainVTKReader::readScalar(const std::string& name, std::int64_t count) {
    if (!seekField("SCALARS", name))
        throw Failure{"VTK missing scalar field '" + name + "'."};
    std::int64_t components = 1;
    std::size_t at = cursor_ + 3;
    const std::size_t atComponents = at;
    if (at < words_.size() && isInt(words_[at]))
        components = std::strtoll(words_[at++].c_str(), nullptr, 10);
    while (at < words_.size() && words_[at] != "LOOKUP_TABLE")
        ++at;
    if (at >= words_.size())
        throw Failure{"Malformed VTK: LOOKUP_TABLE after " + name + " missing"};
    if (components < 0)
        throw Failure{impossible + " at token " + std::to_string(atComponents)};
    cursor_ = at + 2;
    std::vector<float> values;
    // Nothing is read for a scalar without components, so the count alone could fill the memory.
    constexpr std::int64_t plenty = 1 << 20;
    if (components == 0)
        return std::vector<float>(static_cast<std::size_t>(std::min(count, plenty)), 0.0F);
    for (std::int64_t i = 0; i < count; ++i)
        for (std::int64_t component = 0; component < components; ++component) {
            const float value = readFloat();
            if (component == 0)
                values.push_back(value);
        }
    return values;
}

std::vector<float> PlainVTKReader::readVector(const std::string& name, std::int64_t count) {
    if (!seekField("VECTORS", name))
        throw Failure{"VTK missing vector field '" + name + "'."};
    cursor_ += 3;
    std::vector<float> values;
    for (std::int64_t i = 0; i < count; ++i)
        for (int axis = 0; axis < 3; ++axis)
            values.push_back(readFloat());
    return values;
}

PlainVTKReader::Surface PlainVTKReader::surface(const std::string& scalarName) {
    cursor_ = 0;
    return outcome<Surface>([&] {
        requireHeader();
        const Geometry geometry = readGeometry();
        const auto count = static_cast<std::int64_t>(geometry.positions.size() / 3);
        return Surface{geometry.positions, readScalar(scalarName, count), geometry.indices,
            geometry.firstCellType, ""};
    });
}

PlainVTKReader::Volume PlainVTKReader::volume(const std::string& vectorName) {
    cursor_ = 0;
    return outcome<Volume>([&] {
        requireHeader();
        const Geometry geometry = readGeometry();
        const auto count = static_cast<std::int64_t>(geometry.positions.size() / 3);
        return Volume{geometry.positions, readVector(vectorName, count), ""};
    });
}

PlainVTKReader::Stats PlainVTKReader::stats(const std::string& scalarName) {
    cursor_ = 0;
    return outcome<Stats>([&] {
        requireHeader();
        seek("POINTS");
        const std::size_t atCount = cursor_;
        const std::int64_t count = readInt();
        cursor_ = 0;
        std::vector<float> values = readScalar(scalarName, std::max<std::int64_t>(count, 0));
        if (count < 0)
            throw Failure{impossible + " at token " + std::to_string(atCount)};
        if (values.empty())
            throw Failure{"VTK missing scalar field '" + scalarName + "'."};
        Stats result;
        result.stats = {count, FLT_MAX, -FLT_MAX, 0.0F, 0.0F};
        double sum = 0.0;
        for (const float value : values) {
            if (value < result.stats.min)
                result.stats.min = value;
            if (value > result.stats.max)
                result.stats.max = value;
            sum += static_cast<double>(value);
        }
        result.stats.mean = static_cast<float>(sum / static_cast<double>(values.size()));
        std::sort(values.begin(), values.end(),
            [](float a, float b) { return std::isnan(b) ? !std::isnan(a) : a < b; });
        const float product = static_cast<float>(values.size() - 1) * 0.95F;
        result.stats.p95 = values[std::min(values.size() - 1, static_cast<std::size_t>(product))];
        return result;
    });
}

} // namespace ostrella::fuzz
