#include "support/HTTPSServer.h"

#include "support/Wait.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QProcess>
#include <QSslServer>
#include <QSslSocket>
#include <QTcpSocket>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace ostrella::test {

namespace {

/// What the tool needs to keep account of the certificates it signs: this one.
constexpr auto authority = R"([ca]
default_ca = this
[this]
new_certs_dir = {0}
database = {0}/index
serial = {0}/serial
default_md = sha256
policy = policy
x509_extensions = extensions
[policy]
commonName = supplied
[extensions]
subjectAltName = {1}
[req]
distinguished_name = name
[name]
)";

bool openssl(const std::vector<std::string>& arguments) {
    QStringList words;
    for (const auto& argument : arguments) {
        words << QString::fromStdString(argument);
    }
    QProcess tool;
    tool.setProcessChannelMode(QProcess::MergedChannels);
    tool.start(QStringLiteral("openssl"), words);
    const bool isDone =
        tool.waitForFinished() && tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0;
    EXPECT_TRUE(isDone) << tool.readAll().toStdString();
    return isDone;
}

} // namespace

ServerCertificate ServerCertificate::make(const std::string& subjects, QDate from, QDate to) {
    const TemporaryDirectory folder;
    const auto path = [&](const char* name) { return (folder.path() / name).string(); };
    const auto moment = [](QDate date) {
        return date.toString(QStringLiteral("yyyyMMdd")).toStdString() + "000000Z";
    };
    writeFile(path("settings"), fmt::format(authority, folder.path().string(), subjects));
    writeFile(path("index"), "");
    writeFile(path("serial"), "01\n");
    ServerCertificate made;
    if (openssl({"req", "-new", "-config", path("settings"), "-newkey", "ec", "-pkeyopt",
            "ec_paramgen_curve:prime256v1", "-nodes", "-subj", "/CN=Test server", "-keyout",
            path("key"), "-out", path("request")}) &&
        openssl({"ca", "-batch", "-notext", "-config", path("settings"), "-selfsign", "-keyfile",
            path("key"), "-startdate", moment(from), "-enddate", moment(to), "-in", path("request"),
            "-out", path("certificate")})) {
        made.key = QSslKey(QByteArray::fromStdString(readFile(path("key"))), QSsl::Ec);
        made.certificate =
            QSslCertificate(QByteArray::fromStdString(readFile(path("certificate"))));
    }
    return made;
}

const ServerCertificate& ServerCertificate::local() {
    static const ServerCertificate certificate = make("IP:127.0.0.1");
    return certificate;
}

std::string HTTPSServer::Request::header(const std::string& name) const {
    const auto found = headers.find(name);
    return found == headers.end() ? std::string() : found->second;
}

HTTPSServer::HTTPSServer(const ServerCertificate& certificate)
    : server_(new QSslServer(this)), certificate_(certificate.certificate) {
    // This machine is reached directly, whatever proxy its environment names.
    QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setPrivateKey(certificate.key);
    configuration.setLocalCertificate(certificate.certificate);
    server_->setSslConfiguration(configuration);
    connect(server_, &QSslServer::pendingConnectionAvailable, this, &HTTPSServer::connected);
    EXPECT_TRUE(server_->listen(QHostAddress::LocalHost));
    answer(Answer{.status = 404});
}

HTTPSServer::~HTTPSServer() {
    // Its connections end as its children, and tell nobody of it any more.
    for (auto* const socket : server_->findChildren<QTcpSocket*>()) {
        socket->disconnect(this);
    }
}

void HTTPSServer::answer(const Answer& answer) {
    handler_ = [answer](const Request&) { return answer; };
}

HTTPSServer::Answer HTTPSServer::part(
    const Request& request, const std::string& file, const std::string& entityTag) {
    Answer answer{.headers = {{"ETag", entityTag}, {"Accept-Ranges", "bytes"}}, .body = file};
    const std::string range = request.header("range");
    if (range.empty() || request.header("if-range") != entityTag) {
        return answer;
    }
    const auto first = std::stoul(range.substr(std::string("bytes=").size()));
    if (first >= file.size()) {
        answer.status = 416;
        answer.body.clear();
        return answer;
    }
    answer.status = 206;
    answer.headers.emplace_back(
        "Content-Range", fmt::format("bytes {}-{}/{}", first, file.size() - 1, file.size()));
    answer.body = file.substr(first);
    return answer;
}

std::string HTTPSServer::address(const std::string& path) const {
    return fmt::format("https://127.0.0.1:{}{}", server_->serverPort(), path);
}

QSslConfiguration HTTPSServer::trust() const {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({certificate_});
    return configuration;
}

void HTTPSServer::connected() {
    while (auto* const socket = server_->nextPendingConnection()) {
        ++connections_;
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { received(*socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            --connections_;
            socket->deleteLater();
        });
        received(*socket);
    }
}

void HTTPSServer::received(QTcpSocket& socket) {
    const QByteArray text = socket.peek(64 << 10);
    const auto end = text.indexOf("\r\n\r\n");
    if (end < 0) {
        return;
    }
    socket.skip(end + 4);
    const auto lines = text.left(end).split('\n');
    Request request{.path = lines.front().split(' ').value(1).toStdString(), .headers = {}};
    for (const auto& line : lines.mid(1)) {
        const auto colon = line.indexOf(':');
        request.headers[line.left(colon).trimmed().toLower().toStdString()] =
            line.mid(colon + 1).trimmed().toStdString();
    }
    requests_.push_back(request);
    reply(socket, request);
}

void HTTPSServer::reply(QTcpSocket& socket, const Request& request) {
    const Answer answer = handler_(request);
    std::string head = fmt::format("HTTP/1.1 {} Said\r\nConnection: close\r\n", answer.status);
    const auto length = answer.length.value_or(
        answer.end == Answer::End::never ? -1 : static_cast<std::int64_t>(answer.body.size()));
    if (length >= 0) {
        head += fmt::format("Content-Length: {}\r\n", length);
    }
    for (const auto& [name, value] : answer.headers) {
        head += fmt::format("{}: {}\r\n", name, value);
    }
    socket.write(QByteArray::fromStdString(head + "\r\n"));
    const auto send = [this, &socket, body = QByteArray::fromStdString(answer.body)] {
        sent_ += socket.write(body);
    };
    send();
    if (answer.end == Answer::End::close) {
        socket.disconnectFromHost();
    } else if (answer.end == Answer::End::never) {
        auto& secured = static_cast<QSslSocket&>(socket);
        connect(&secured, &QSslSocket::encryptedBytesWritten, this, [&secured, send] {
            if (secured.bytesToWrite() + secured.encryptedBytesToWrite() < 1 << 16) {
                send();
            }
        });
    }
}

} // namespace ostrella::test
