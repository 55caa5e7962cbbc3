#include "Update/PlainLine.h"

#include <QList>

#include <algorithm>

namespace ostrella {

std::string plainLine(const QString& text, qsizetype most) {
    // No more is looked at than can be kept, but for white space, of which nobody writes so much.
    auto characters = text.left(most * 4).toUcs4();
    for (auto& character : characters) {
        if (!QChar::isPrint(character)) {
            character = ' ';
        }
    }
    const auto simplified = QString::fromUcs4(
        reinterpret_cast<const char32_t*>(characters.constData()), characters.size())
                                .simplified()
                                .toUcs4();
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(simplified.constData()),
        std::min(simplified.size(), most))
        .trimmed()
        .toStdString();
}

} // namespace ostrella
