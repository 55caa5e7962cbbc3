#pragma once

#include <QString>
#include <QStringView>

namespace ostrella {

/// The tab and the characters of Unicode's class Zs: blanks within a line.
inline bool isBlank(QChar character) {
    return character == QLatin1Char('\t') || character.category() == QChar::Separator_Space;
}

/// `text` without what `isTrimmed` tells of at both ends.
template <class IsTrimmed>
QStringView trimmed(QStringView text, IsTrimmed isTrimmed) {
    while (!text.isEmpty() && isTrimmed(text.front())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && isTrimmed(text.back())) {
        text.chop(1);
    }
    return text;
}

} // namespace ostrella
