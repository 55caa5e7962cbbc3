#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

namespace ostrella {

/// The families of type that the window is set in, by what this machine has.
namespace Faces {

/// Inter where it is installed, else what the desktop sets its own texts in.
QStringList system();

/// JetBrains Mono where it is installed, else the desktop's fixed face.
QStringList monospaced();

/// The system face with digits of one width, in a weight. Faces whose digits vary but that hold
/// tabular ones as a feature are registered a second time, in memory, with that feature always
/// on, since a QFont cannot ask for features. Without such a feature it is the system face.
QStringList tabular(QFont::Weight weight);

} // namespace Faces

} // namespace ostrella
