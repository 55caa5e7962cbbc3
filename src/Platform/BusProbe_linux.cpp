#include "Platform/BusProbe.h"

#include "Platform/FileDescriptor.h"

#include <QByteArray>
#include <QList>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace ostrella {

namespace {

struct Place {
    sockaddr_un address{};
    socklen_t length = 0;
};

/// The socket of the first place that an address such as "unix:path=/run/bus,guid=1;..." names.
std::optional<Place> placeOf(const QString& address) {
    const QByteArray first = address.toUtf8().split(';').constFirst();
    const QByteArray transport("unix:");
    if (!first.startsWith(transport)) {
        return std::nullopt;
    }
    for (const QByteArray& pair : first.sliced(transport.size()).split(',')) {
        const bool isPath = pair.startsWith("path=");
        if (!isPath && !pair.startsWith("abstract=")) {
            continue;
        }
        QByteArray name = QByteArray::fromPercentEncoding(pair.sliced(pair.indexOf('=') + 1));
        if (!isPath) {
            name.prepend('\0');
        }
        Place place;
        place.address.sun_family = AF_UNIX;
        if (name.isEmpty() ||
            static_cast<std::size_t>(name.size()) >= sizeof place.address.sun_path) {
            return std::nullopt;
        }
        std::memcpy(
            place.address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
        place.length =
            static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) +
                                   static_cast<std::size_t>(name.size()) + (isPath ? 1 : 0));
        return place;
    }
    return std::nullopt;
}

} // namespace

bool busAnswers(const QString& address) {
    const auto place = placeOf(address);
    if (!place) {
        return true;
    }
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (socket.get() < 0 ||
        connect(socket.get(), reinterpret_cast<const sockaddr*>(&place->address), place->length) !=
            0) {
        return false;
    }
    // The first words of the bus's own protocol; it takes them up or refuses them, but answers.
    const QByteArray knock = QByteArray(1, '\0') + "AUTH EXTERNAL " +
                             QByteArray::number(static_cast<qulonglong>(getuid())).toHex() + "\r\n";
    if (send(socket.get(), knock.constData(), static_cast<std::size_t>(knock.size()),
            MSG_NOSIGNAL) != knock.size()) {
        return false;
    }
    char word = 0;
    ssize_t count = -1;
    do {
        count = recv(socket.get(), &word, 1, 0);
    } while (count < 0 && errno == EINTR);
    return count == 1;
}

} // namespace ostrella
