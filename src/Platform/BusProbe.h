#pragma once

#include <QString>

namespace ostrella {

/// Knocks at the bus at `address` as its clients do, and waits as long as it takes for a word back:
/// true once it has come, false where nobody listens or somebody hangs up. The bus library must not
/// be left alone with a bus that says nothing, since the process could not end meanwhile; a thread
/// that waits here is in nobody's way. Places that are no sockets of this machine are not tried.
bool busAnswers(const QString& address);

} // namespace ostrella
