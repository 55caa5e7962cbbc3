#pragma once

#include <QString>

#include <string>

namespace ostrella {

/// What someone else wrote, as one line that is safe to show: white space runs become one space,
/// characters that are not printed (controls, those that turn the direction of writing) become
/// space too, and no more than `most` characters are kept.
std::string plainLine(const QString& text, qsizetype most);

} // namespace ostrella
