#include "Models/NotificationCenter.h"

#include <utility>
#include <vector>

namespace ostrella {

NotificationCenter::Token NotificationCenter::observe(std::string_view name, Handler handler) {
    auto token = std::make_shared<Handler>(std::move(handler));
    handlers_[std::string(name)].push_back(token);
    return token;
}

void NotificationCenter::post(std::string_view name, const std::any& object) {
    const auto found = handlers_.find(name);
    if (found == handlers_.end()) {
        return;
    }
    // Taken first: a handler may subscribe, or end a subscription.
    std::vector<std::shared_ptr<Handler>> due;
    found->second.remove_if([&due](const std::weak_ptr<Handler>& entry) {
        if (auto handler = entry.lock()) {
            due.push_back(std::move(handler));
            return false;
        }
        return true;
    });
    for (const auto& handler : due) {
        (*handler)(object);
    }
}

} // namespace ostrella
