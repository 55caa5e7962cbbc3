#pragma once

#include <QDate>
#include <QObject>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class QSslServer;
class QTcpSocket;

namespace ostrella::test {

/// A key and the certificate it signed itself, made on the spot.
struct ServerCertificate {
    QSslKey key;
    QSslCertificate certificate;

    /// For the names of `subjects`, as in "IP:127.0.0.1" or "DNS:localhost", in these days.
    static ServerCertificate make(const std::string& subjects,
        QDate from = QDate::currentDate().addDays(-1), QDate to = QDate::currentDate().addDays(2));
    /// For 127.0.0.1, today; the same one in the whole program.
    static const ServerCertificate& local();
};

/// A server on 127.0.0.1 that does what a test tells it, also what no server should. It lives in
/// the event loop of the test.
class HTTPSServer final : public QObject {
    Q_OBJECT

public:
    struct Request {
        std::string path;
        /// By their names in lower case.
        std::map<std::string, std::string> headers;

        std::string header(const std::string& name) const;
    };

    struct Answer {
        int status = 200;
        std::vector<std::pair<std::string, std::string>> headers = {};
        std::string body = {};
        /// The length that is told: by default that of the body; -1 for none.
        std::optional<std::int64_t> length = {};
        enum class End {
            /// The connection is closed after the body.
            close,
            /// Nothing follows the body, and the connection stays open.
            silence,
            /// The body comes again and again.
            never
        } end = End::close;
    };

    using Handler = std::function<Answer(const Request&)>;

    explicit HTTPSServer(const ServerCertificate& certificate = ServerCertificate::local());
    ~HTTPSServer() override;

    /// Every request is answered so from now on.
    void answer(Handler handler) { handler_ = std::move(handler); }
    void answer(const Answer& answer);

    /// The answer of a good server: that part of the file which the request asks for, if its file
    /// is still the one the client knows.
    static Answer part(
        const Request& request, const std::string& file, const std::string& entityTag);

    /// "https://127.0.0.1:PORT" and the path.
    std::string address(const std::string& path = "/") const;
    /// What trusts the certificate of this server and no other.
    QSslConfiguration trust() const;

    /// What was asked up to now.
    const std::vector<Request>& requests() const { return requests_; }
    /// Bytes of bodies that were given to the network up to now.
    std::int64_t sent() const { return sent_; }
    /// Connections that are open now.
    std::size_t connections() const { return connections_; }

private:
    void connected();
    void received(QTcpSocket& socket);
    void reply(QTcpSocket& socket, const Request& request);

    QSslServer* server_;
    QSslCertificate certificate_;
    Handler handler_;
    std::vector<Request> requests_;
    std::int64_t sent_ = 0;
    std::size_t connections_ = 0;
};

} // namespace ostrella::test
