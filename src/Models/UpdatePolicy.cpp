#include "Models/UpdatePolicy.h"

namespace ostrella::UpdatePolicy {

std::string versionText(const std::optional<InformationDictionary>& info) {
    const InformationDictionary& told = info ? *info : InformationDictionary();
    const std::string version = stringOf(told, InformationKeys::version).value_or("0.0.0");
    const std::string build = stringOf(told, InformationKeys::build).value_or("");
    return build.empty() ? version : version + " (" + build + ")";
}

} // namespace ostrella::UpdatePolicy
