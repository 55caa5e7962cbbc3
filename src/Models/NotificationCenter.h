#pragma once

#include <any>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace ostrella {

/// Application-wide notifications: a name and at most one object, delivered at once on the main
/// thread, in the order of the subscriptions. A command never calls into a view or into the run
/// itself.
class NotificationCenter {
public:
    using Handler = std::function<void(const std::any& object)>;
    /// A subscription; it ends with its token.
    using Token = std::shared_ptr<void>;

    [[nodiscard]] Token observe(std::string_view name, Handler handler);
    void post(std::string_view name, const std::any& object = {});

private:
    using Handlers = std::list<std::weak_ptr<Handler>>;
    std::map<std::string, Handlers, std::less<>> handlers_;
};

/// The names, and what travels as the object.
namespace Notifications {

inline constexpr std::string_view openSTLRequested = "Ostrella.openSTLRequested";
/// The sample's id, a std::string.
inline constexpr std::string_view sampleLoadRequested = "Ostrella.sampleLoadRequested";
inline constexpr std::string_view runSimulationRequested = "Ostrella.runSimulationRequested";
inline constexpr std::string_view runDemoRequested = "Ostrella.runDemoRequested";
inline constexpr std::string_view cancelSimulationRequested = "Ostrella.cancelSimulationRequested";
/// The SimulationParameters*.
inline constexpr std::string_view geometryLoaded = "Ostrella.geometryLoaded";
/// A ViewPreset's raw value, a std::string.
inline constexpr std::string_view viewPresetRequested = "Ostrella.viewPresetRequested";
inline constexpr std::string_view fitToViewRequested = "Ostrella.fitToViewRequested";
/// A LogStore::Level.
inline constexpr std::string_view showLogRequested = "Ostrella.showLogRequested";

} // namespace Notifications

} // namespace ostrella
