#include "Views/Panel/LogSelection.h"

#include <algorithm>

namespace ostrella {

LogRow::Span LogSelection::within(std::size_t number, qsizetype length) const {
    const LogPlace first = from();
    const LogPlace last = to();
    if (empty() || number < first.number || number > last.number) {
        return {};
    }
    const bool goesOn = number < last.number;
    return {number == first.number ? std::min(first.position, length) : 0,
        goesOn ? length : std::min(last.position, length), goesOn};
}

} // namespace ostrella
