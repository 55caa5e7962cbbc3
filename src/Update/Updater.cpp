#include "Update/Updater.h"

namespace ostrella {

Updater::Updater(QObject* parent) : QObject(parent) {}

Updater::~Updater() = default;

} // namespace ostrella
