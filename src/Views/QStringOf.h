#pragma once

#include <QString>

#include <string_view>

namespace ostrella {

/// A text of the house as the toolkit wants it.
inline QString qStringOf(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

} // namespace ostrella
