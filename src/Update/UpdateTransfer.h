#pragma once

#include "Models/Timers.h"

#include <QByteArray>
#include <QObject>
#include <QSslConfiguration>
#include <QUrl>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class QNetworkAccessManager;
class QNetworkReply;

namespace ostrella {

/// Where the bytes of a transfer go. What it throws, as UpdateRefusal, ends the transfer.
class UpdateSink {
public:
    /// What the server says before the first byte.
    struct Answer {
        /// 200 for files.
        int status = 0;
        /// -1 where it is not said.
        std::int64_t length = -1;
        QByteArray contentRange;
        QByteArray entityTag;
        QByteArray lastModified;
    };
    using Header = std::pair<QByteArray, QByteArray>;

    virtual ~UpdateSink() = default;

    /// What is asked of the server besides the address.
    virtual std::vector<Header> headers() const { return {}; }
    /// False if the server is to be asked again, with the headers there are now; of answers that
    /// are not 200, only those to a request for a range come here.
    virtual bool begin(const Answer& answer) = 0;
    virtual void write(const char* bytes, std::size_t count) = 0;
    /// `cut` tells why the server ended too soon, if it did.
    virtual void end(const std::optional<std::string>& cut) = 0;
    virtual std::int64_t received() const = 0;
    virtual std::int64_t expected() const { return 0; }
};

/// Brings the bytes at one address to a sink, over HTTPS (or from a file), also where the server
/// sends one on. Main thread. Begins when made; the destructor ends it.
class UpdateTransfer final : public QObject {
    Q_OBJECT

public:
    struct Order {
        QUrl address;
        /// As the user reads of it: "update feed".
        std::string name;
        QSslConfiguration tls;
        std::chrono::duration<double> silence{};
        /// For the whole; 0: any.
        std::chrono::duration<double> time{};
        int redirects = 0;
        /// Called later, as often as the event loop turns.
        std::function<void()> progressed;
        /// Called later, once, with the line for the log if it failed.
        std::function<void(const std::optional<std::string>& refusal)> ended;
    };

    UpdateTransfer(QNetworkAccessManager& network, TimerService& timers, Order order,
        std::unique_ptr<UpdateSink> sink);
    ~UpdateTransfer() override;

    UpdateSink& sink() { return *sink_; }

private:
    void ask();
    void headersCame();
    void bytesCame();
    void goOnLater();
    void replyEnded();
    void take(const std::function<void()>& step);
    void redirected(const QUrl& location);
    void heardOf();
    std::string networkFailure() const;
    void leaveReply();
    void end(std::optional<std::string> refusal);

    QNetworkAccessManager& network_;
    TimerService& timers_;
    Order order_;
    std::unique_ptr<UpdateSink> sink_;
    QNetworkReply* reply_ = nullptr;
    QString certificateFault_;
    int redirects_ = 0;
    bool hasBegun_ = false;
    bool isOver_ = false;
    bool progressIsPosted_ = false;
    /// More of the answer is to be read at the next turn of the event loop.
    bool goesOn_ = false;
    /// Counts what was heard of the server, so that a late timer knows that it is late.
    std::uint64_t heard_ = 0;
    Timer silence_;
    Timer whole_;
};

} // namespace ostrella
