#include "Models/SurfacePreparation.h"

namespace ostrella {

std::string_view rawValue(SurfaceChoice choice) {
    switch (choice) {
    case SurfaceChoice::automatic:
        return "auto";
    case SurfaceChoice::asIs:
        return "as-is";
    case SurfaceChoice::prepared:
        return "prepared";
    }
    return {};
}

std::optional<SurfaceChoice> surfaceChoiceFromRawValue(std::string_view raw) {
    for (const SurfaceChoice choice : allSurfaceChoices) {
        if (rawValue(choice) == raw) {
            return choice;
        }
    }
    return std::nullopt;
}

} // namespace ostrella
