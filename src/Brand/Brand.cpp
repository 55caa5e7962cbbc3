#include "Brand/Brand.h"

namespace ostrella::Brand {

const Shade& Color::resolved(Appearance appearance) const {
    return appearance == Appearance::dark ? dark : light;
}

} // namespace ostrella::Brand
