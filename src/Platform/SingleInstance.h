#pragma once

#include "Platform/FileDescriptor.h"
#include "Platform/HandOver.h"

#include <QLocalServer>
#include <QObject>

#include <chrono>
#include <filesystem>
#include <optional>

class QLocalSocket;

namespace ostrella {

/// Has one process of the application serve its user on a display: the first start listens on a
/// local socket, and later ones hand it what they were to open. A lock beside the socket, which the
/// system takes back from a process that ends in whatever way, tells who is the first; the socket
/// of one that crashed is swept away. Main thread only.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Role {
        first,  ///< this process serves; later ones will come to it
        second, ///< the first has taken everything over: there is nothing left to do
        alone,  ///< nobody takes it over, and nobody can come: open everything here
    };

    /// `socket` is a path in a folder that belongs to the user alone; the folder is made where it
    /// is missing.
    explicit SingleInstance(std::filesystem::path socket, QObject* parent = nullptr);
    ~SingleInstance() override;

    /// The place for the user and the display of this process.
    static std::filesystem::path usualSocket();

    /// Finds out about the role, and hands over where there is somebody to hand over to. Waits at
    /// most so long, then leaves a first one that hangs alone. Once.
    Role start(
        const HandOver& handOver, std::chrono::milliseconds patience = std::chrono::seconds(2));

    /// Whoever has connected and not said all within this time is sent away.
    static constexpr std::chrono::seconds longestVisit{2};
    static constexpr int mostVisitors = 16;

Q_SIGNALS:
    /// A later start has handed this over: open it, and bring the window to the front.
    void handedOver(const ostrella::HandOver& handOver);

private:
    class Visit;

    bool takeLock();
    bool listen();
    void receive();

    std::filesystem::path socket_;
    FileDescriptor lock_;
    QLocalServer server_;
    int visitors_ = 0;
};

} // namespace ostrella
