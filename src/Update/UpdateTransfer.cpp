#include "Update/UpdateTransfer.h"

#include "Models/MainThread.h"
#include "Update/PlainLine.h"
#include "Update/UpdateRefusal.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>
#include <QSslError>

#include <fmt/format.h>

#include <array>

namespace ostrella {

namespace {

/// So much of the answer waits here at most; the rest waits in the network.
constexpr qint64 readBuffer = 1 << 20;
/// A file is there at once and whole: it is copied in pieces, so that the window goes on between.
constexpr qint64 mostInOneTurn = 1 << 20;
constexpr qsizetype longestWord = 200;
constexpr int ok = 200;
constexpr int partialContent = 206;
constexpr int rangeNotSatisfiable = 416;

bool isRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

/// 0 where there was no answer at all.
int statusOf(const QNetworkReply& reply) {
    if (reply.url().isLocalFile()) {
        return reply.error() == QNetworkReply::NoError ? ok : 0;
    }
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

std::string shown(const QUrl& address) {
    return plainLine(address.toDisplayString(QUrl::RemoveUserInfo), longestWord);
}

} // namespace

UpdateTransfer::UpdateTransfer(QNetworkAccessManager& network, TimerService& timers, Order order,
    std::unique_ptr<UpdateSink> sink)
    : network_(network), timers_(timers), order_(std::move(order)), sink_(std::move(sink)) {
    // Whoever hands in other authorities does not thereby give up to check them.
    order_.tls.setPeerVerifyMode(QSslSocket::VerifyPeer);
    order_.tls.setProtocol(QSsl::TlsV1_2OrLater);
    if (order_.time.count() > 0) {
        whole_ = timers_.after(
            order_.time, [self = QPointer(this), name = order_.name, time = order_.time] {
                MainThread::post([self, name, time] {
                    if (self) {
                        self->end(UpdateRefusal(
                            fmt::format("The {} takes longer than {:g} s.", name, time.count()))
                                      .what());
                    }
                });
            });
    }
    ask();
}

UpdateTransfer::~UpdateTransfer() {
    leaveReply();
}

void UpdateTransfer::ask() {
    leaveReply();
    QNetworkRequest request(order_.address);
    request.setSslConfiguration(order_.tls);
    request.setAttribute(
        QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(
        QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Ostrella"));
    // What is counted and signed are the bytes of the file: nothing is to be unpacked on the way.
    request.setRawHeader("Accept-Encoding", "identity");
    for (const auto& [name, value] : sink_->headers()) {
        request.setRawHeader(name, value);
    }
    hasBegun_ = false;
    certificateFault_.clear();
    reply_ = network_.get(request);
    reply_->setReadBufferSize(readBuffer);
    connect(reply_, &QNetworkReply::metaDataChanged, this, &UpdateTransfer::headersCame);
    connect(reply_, &QNetworkReply::readyRead, this, &UpdateTransfer::bytesCame);
    connect(reply_, &QNetworkReply::finished, this, &UpdateTransfer::replyEnded);
    connect(reply_, &QNetworkReply::sslErrors, this, [this](const QList<QSslError>& errors) {
        certificateFault_ = errors.isEmpty() ? QString() : errors.front().errorString();
    });
    heardOf();
}

void UpdateTransfer::take(const std::function<void()>& step) {
    try {
        step();
    } catch (const UpdateRefusal& refusal) {
        end(refusal.what());
    }
}

void UpdateTransfer::headersCame() {
    heardOf();
    const int status = statusOf(*reply_);
    if (isOver_ || hasBegun_ || status == 0) {
        return;
    }
    take([&] {
        if (isRedirect(status)) {
            redirected(QUrl::fromEncoded(reply_->rawHeader("Location"), QUrl::StrictMode));
            return;
        }
        const bool askedForRange = reply_->request().hasRawHeader("Range");
        if (status != ok &&
            !(askedForRange && (status == partialContent || status == rangeNotSatisfiable))) {
            const auto phrase = plainLine(
                reply_->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString(), 60);
            throw UpdateRefusal(fmt::format("The server answered {}{} instead of the {}.", status,
                phrase.empty() ? "" : " (" + phrase + ")", order_.name));
        }
        const auto length = reply_->header(QNetworkRequest::ContentLengthHeader);
        hasBegun_ = sink_->begin({.status = status,
            .length = length.isValid() ? length.toLongLong() : -1,
            .contentRange = reply_->rawHeader("Content-Range"),
            .entityTag = reply_->rawHeader("ETag"),
            .lastModified = reply_->rawHeader("Last-Modified")});
        if (!hasBegun_) {
            ask();
        }
    });
}

void UpdateTransfer::redirected(const QUrl& location) {
    if (!location.isValid()) { // or empty
        throw UpdateRefusal(
            fmt::format("The server sends on for the {}, but not to where.", order_.name));
    }
    const QUrl target = order_.address.resolved(location);
    if (target.scheme() != QLatin1String("https") || target.host().isEmpty()) {
        throw UpdateRefusal(
            fmt::format("The server sends on for the {} to an address that is not HTTPS: {}",
                order_.name, shown(target)));
    }
    if (++redirects_ > order_.redirects) {
        throw UpdateRefusal(fmt::format(
            "The server sends on for the {} more than {} times.", order_.name, order_.redirects));
    }
    order_.address = target;
    ask();
}

void UpdateTransfer::bytesCame() {
    heardOf();
    if (isOver_ || !hasBegun_ || goesOn_) {
        return;
    }
    take([this] {
        std::array<char, 64 << 10> bytes;
        qint64 left = mostInOneTurn;
        for (qint64 count = 1; count > 0 && left > 0; left -= count) {
            count = reply_->read(bytes.data(), bytes.size());
            if (count > 0) {
                sink_->write(bytes.data(), static_cast<std::size_t>(count));
            }
        }
        if (left <= 0) {
            goOnLater();
        }
    });
    if (isOver_ || progressIsPosted_ || !order_.progressed) {
        return;
    }
    progressIsPosted_ = true;
    MainThread::post([self = QPointer(this)] {
        if (self) {
            self->progressIsPosted_ = false;
            // A copy: who is told may end this transfer.
            const auto progressed = self->order_.progressed;
            progressed();
        }
    });
}

void UpdateTransfer::goOnLater() {
    if (std::exchange(goesOn_, true)) {
        return;
    }
    MainThread::post([self = QPointer(this), reply = QPointer(reply_)] {
        if (!self) {
            return;
        }
        self->goesOn_ = false;
        if (self->isOver_ || self->reply_ != reply) {
            return;
        }
        if (reply->isFinished()) {
            self->replyEnded();
        } else {
            self->bytesCame();
        }
    });
}

void UpdateTransfer::replyEnded() {
    const bool hasFailed = reply_->error() != QNetworkReply::NoError;
    if (!hasBegun_) {
        const auto* const present = reply_;
        headersCame();
        if (isOver_ || reply_ != present) {
            return;
        }
    }
    if (hasBegun_) {
        bytesCame();
    }
    if (isOver_ || goesOn_) {
        return;
    }
    take([&] {
        const std::string failure = hasFailed ? networkFailure() : std::string();
        if (!hasBegun_) {
            throw UpdateRefusal(
                hasFailed ? failure : fmt::format("The server sent no {}.", order_.name));
        }
        sink_->end(hasFailed ? std::optional(failure) : std::nullopt);
        end(std::nullopt);
    });
}

std::string UpdateTransfer::networkFailure() const {
    if (!certificateFault_.isEmpty()) {
        return fmt::format("The certificate of {} is not trusted: {}.",
            plainLine(order_.address.host(), longestWord),
            plainLine(certificateFault_, longestWord));
    }
    auto reason = plainLine(reply_->errorString(), longestWord);
    if (!reason.ends_with('.')) {
        reason += '.';
    }
    return fmt::format("The {} cannot be fetched: {}", order_.name, reason);
}

void UpdateTransfer::heardOf() {
    if (isOver_) {
        return;
    }
    const auto heard = ++heard_;
    silence_ = timers_.after(order_.silence, [self = QPointer(this), heard] {
        MainThread::post([self, heard] {
            if (self && self->heard_ == heard) {
                self->end(UpdateRefusal(fmt::format("The server sent nothing of the {} for {:g} s.",
                                            self->order_.name, self->order_.silence.count()))
                              .what());
            }
        });
    });
}

void UpdateTransfer::leaveReply() {
    if (!reply_) {
        return;
    }
    reply_->disconnect(this);
    // It may be in the middle of telling: it goes, and its connection with it, when it has.
    std::exchange(reply_, nullptr)->deleteLater();
}

void UpdateTransfer::end(std::optional<std::string> refusal) {
    if (isOver_) {
        return;
    }
    isOver_ = true;
    silence_.cancel();
    whole_.cancel();
    leaveReply();
    MainThread::post([self = QPointer(this), refusal = std::move(refusal)] {
        if (self) {
            const auto ended = self->order_.ended;
            ended(refusal);
        }
    });
}

} // namespace ostrella
