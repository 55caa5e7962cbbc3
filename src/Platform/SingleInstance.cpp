#include "Platform/SingleInstance.h"

#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QThread>
#include <QTimer>

#include <fmt/format.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrella {

namespace {

namespace fs = std::filesystem;

/// What the first one says to whoever comes; it is waited for, so that one that hangs does not find
/// a message when it comes to itself, long after its sender has opened everything alone.
constexpr const char greeting[] = "ostrella-here 1\n";
constexpr const char receipt[] = "taken\n";

/// Between two looks at whether the first one has come up or gone.
constexpr unsigned long breath = 20; // ms

enum class Delivery { taken, refused, nobody };

/// Waits until the other side has said `words`.
bool hears(QLocalSocket& socket, const QByteArray& words, const QDeadlineTimer& deadline) {
    while (socket.bytesAvailable() < words.size()) {
        if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) {
            return false;
        }
    }
    return socket.read(words.size()) == words;
}

Delivery deliver(const fs::path& path, const std::string& message, const QDeadlineTimer& deadline) {
    QLocalSocket socket;
    socket.connectToServer(QString::fromStdString(path.string()));
    if (!socket.waitForConnected(static_cast<int>(deadline.remainingTime()))) {
        return Delivery::nobody;
    }
    if (!hears(socket, greeting, deadline)) {
        // It hangs, or is just about to go.
        return Delivery::nobody;
    }
    socket.write(message.data(), static_cast<qint64>(message.size()));
    return hears(socket, receipt, deadline) ? Delivery::taken : Delivery::refused;
}

/// Makes the folder if need be; true if nobody else can put anything there.
bool isOwnFolder(const fs::path& folder) {
    constexpr mode_t forTheUser = 0700;
    mkdir(folder.c_str(), forTheUser);
    struct stat facts {};
    return lstat(folder.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode) &&
           facts.st_uid == geteuid() && (facts.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

/// A short word for a display, whatever its name; the 32-bit hash of Fowler, Noll and Vo.
std::uint32_t hash(const std::string& text) {
    std::uint32_t value = 2166136261U;
    for (const char c : text) {
        value = (value ^ static_cast<unsigned char>(c)) * 16777619U;
    }
    return value;
}

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

} // namespace

/// One who has connected, until all has been said or the time is over.
class SingleInstance::Visit final : public QObject {
public:
    Visit(SingleInstance& host, QLocalSocket* socket)
        : QObject(&host), host_(host), socket_(socket) {
        ++host_.visitors_;
        socket->setParent(this);
        socket->setReadBufferSize(HandOver::mostBytes + 1);
        connect(socket, &QLocalSocket::readyRead, this, &Visit::read);
        connect(socket, &QLocalSocket::disconnected, this, &QObject::deleteLater);
        QTimer::singleShot(longestVisit, this, &QObject::deleteLater);
        socket->write(greeting);
        read();
    }

    ~Visit() override { --host_.visitors_; }

private:
    void read() {
        if (isOver_) {
            return;
        }
        heard_ += socket_->readAll().toStdString();
        const auto length = HandOver::messageLength(heard_);
        if (!length || heard_.size() < *length) {
            return;
        }
        isOver_ = true;
        const auto handOver = HandOver::decoded(heard_);
        if (!handOver) {
            socket_->abort();
            deleteLater();
            return;
        }
        socket_->write(receipt);
        socket_->disconnectFromServer();
        Q_EMIT host_.handedOver(*handOver);
    }

    SingleInstance& host_;
    QLocalSocket* socket_;
    std::string heard_;
    bool isOver_ = false;
};

SingleInstance::SingleInstance(fs::path socket, QObject* parent)
    : QObject(parent), socket_(std::move(socket)) {
    connect(&server_, &QLocalServer::newConnection, this, &SingleInstance::receive);
}

SingleInstance::~SingleInstance() {
    // While they can still count themselves out.
    qDeleteAll(findChildren<QObject*>(Qt::FindDirectChildrenOnly));
}

fs::path SingleInstance::usualSocket() {
    const std::string runtime = variable("XDG_RUNTIME_DIR");
    const fs::path folder = !runtime.empty()
                                ? fs::path(runtime)
                                : fs::temp_directory_path() / fmt::format("ostrella-{}", geteuid());
    const std::string display = variable("WAYLAND_DISPLAY") + ' ' + variable("DISPLAY");
    return folder / fmt::format("ostrella-{:08x}.socket", hash(display));
}

SingleInstance::Role SingleInstance::start(
    const HandOver& handOver, std::chrono::milliseconds patience) {
    const auto message = handOver.encoded();
    if (!message || !isOwnFolder(socket_.parent_path())) {
        return Role::alone;
    }
    const QDeadlineTimer deadline(patience);
    while (true) {
        if (takeLock()) {
            return listen() ? Role::first : Role::alone;
        }
        // Somebody has the lock: it serves, or is about to, or is about to go.
        switch (deliver(socket_, *message, deadline)) {
        case Delivery::taken:
            return Role::second;
        case Delivery::refused:
            return Role::alone;
        case Delivery::nobody:
            break;
        }
        if (deadline.hasExpired()) {
            return Role::alone;
        }
        QThread::msleep(breath);
    }
}

bool SingleInstance::takeLock() {
    const fs::path file = socket_.string() + ".lock";
    constexpr mode_t forTheUser = 0600;
    FileDescriptor lock(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, forTheUser));
    if (lock.get() < 0 || flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        return false;
    }
    lock_ = std::move(lock);
    return true;
}

bool SingleInstance::listen() {
    // Whoever made it is no more: the lock is ours.
    unlink(socket_.c_str());
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    if (!server_.listen(QString::fromStdString(socket_.string()))) {
        // Nobody is to wait for a service that never comes.
        lock_.close();
        return false;
    }
    return true;
}

void SingleInstance::receive() {
    while (QLocalSocket* const socket = server_.nextPendingConnection()) {
        if (visitors_ < mostVisitors) {
            new Visit(*this, socket);
        } else {
            delete socket;
        }
    }
}

} // namespace ostrella
