#include "Update/UpdateDownload.h"

#include "Models/FileError.h"
#include "Models/MainThread.h"
#include "Models/OrdinaryFile.h"
#include "Update/PartialArchive.h"
#include "Update/PlainLine.h"
#include "Update/UpdateRefusal.h"
#include "Update/UpdateTransfer.h"

#include <QNetworkAccessManager>
#include <QUrl>

#include <fmt/format.h>

#include <utility>

namespace ostrella {

namespace {

constexpr auto feedName = "update feed";
constexpr auto archiveName = "update archive";
constexpr qsizetype longestAddress = 200;

std::string sizeText(std::int64_t bytes) {
    constexpr std::int64_t mebibyte = 1 << 20;
    constexpr std::int64_t gibibyte = 1 << 30;
    if (bytes % gibibyte == 0) {
        return fmt::format("{} GiB", bytes / gibibyte);
    }
    if (bytes % mebibyte == 0) {
        return fmt::format("{} MiB", bytes / mebibyte);
    }
    return fmt::format("{} bytes", bytes);
}

/// A feed: in memory, and no more of it than is allowed.
class FeedSink final : public UpdateSink {
public:
    explicit FeedSink(std::int64_t most) : most_(most) {}

    const std::string& text() const { return text_; }

    bool begin(const Answer& answer) override {
        measure(answer.length);
        return true;
    }
    void write(const char* bytes, std::size_t count) override {
        measure(received() + static_cast<std::int64_t>(count));
        text_.append(bytes, count);
    }
    void end(const std::optional<std::string>& cut) override {
        if (cut) {
            throw UpdateRefusal(*cut);
        }
    }
    std::int64_t received() const override { return static_cast<std::int64_t>(text_.size()); }

private:
    void measure(std::int64_t length) const {
        if (length > most_) {
            throw UpdateRefusal(fmt::format("The update feed is larger than {}.", sizeText(most_)));
        }
    }

    std::int64_t most_;
    std::string text_;
};

} // namespace

UpdateDownload::UpdateDownload(Setup setup, QObject* parent)
    : QObject(parent), setup_(std::move(setup)) {}

UpdateDownload::~UpdateDownload() = default;

QNetworkAccessManager& UpdateDownload::network() {
    if (!network_) {
        network_ = new QNetworkAccessManager(this);
    }
    return *network_;
}

QSslConfiguration UpdateDownload::tls() const {
    return setup_.tls ? *setup_.tls : QSslConfiguration::defaultConfiguration();
}

void UpdateDownload::cancel() {
    // What is posted already asks for these and does not find them.
    transfer_.reset();
    fetch_.reset();
}

void UpdateDownload::discardArchives() {
    cancel();
    PartialArchive::clear(setup_.folder);
}

void UpdateDownload::later(std::function<void()> work) {
    MainThread::post([fetch = std::weak_ptr(fetch_), work = std::move(work)] {
        if (!fetch.expired()) {
            work();
        }
    });
}

void UpdateDownload::check(const QUrl& address, bool mayBeFile, const char* name) {
    if (mayBeFile && address.isLocalFile() && address.host().isEmpty()) {
        // Neither a folder nor a pipe, which would be waited for.
        const OrdinaryFile file(address.toLocalFile().toStdString());
    } else if (!address.isValid() || address.scheme() != QLatin1String("https") ||
               address.host().isEmpty()) {
        throw UpdateRefusal(fmt::format("The address of the {} is not HTTPS: {}", name,
            plainLine(address.toDisplayString(QUrl::RemoveUserInfo), longestAddress)));
    }
}

void UpdateDownload::begin(const Refused& refused, const std::function<void()>& work) {
    cancel();
    fetch_ = std::make_shared<char>();
    try {
        work();
    } catch (const UpdateRefusal& refusal) {
        later([refused, text = std::string(refusal.what())] { refused(text); });
    } catch (const FileError& error) {
        later([refused, text = std::string(UpdateRefusal(std::string(error.what()) + '.').what())] {
            refused(text);
        });
    }
}

void UpdateDownload::fetchFeed(
    const std::string& address, std::function<void(const std::string&)> arrived, Refused refused) {
    begin(refused, [&] {
        const QUrl url(QString::fromStdString(address));
        check(url, setup_.allowsFiles, feedName);
        auto sink = std::make_unique<FeedSink>(setup_.limits.feedBytes);
        auto ended = [this, arrived = std::move(arrived), refused](const auto& refusal) {
            const auto transfer = std::move(transfer_);
            if (refusal) {
                refused(*refusal);
            } else {
                arrived(static_cast<const FeedSink&>(transfer->sink()).text());
            }
        };
        transfer_ = std::make_unique<UpdateTransfer>(network(), setup_.timers,
            UpdateTransfer::Order{.address = url,
                .name = feedName,
                .tls = tls(),
                .silence = setup_.limits.silence,
                .time = setup_.limits.feedTime,
                .redirects = setup_.limits.redirects,
                .progressed = {},
                .ended = std::move(ended)},
            std::move(sink));
    });
}

void UpdateDownload::fetchArchive(const std::string& feedAddress, const AppcastItem& item,
    Progress progress, std::function<void(const std::filesystem::path&)> arrived, Refused refused) {
    begin(refused, [&] {
        const QUrl feed(QString::fromStdString(feedAddress));
        const QUrl url = feed.resolved(QUrl(QString::fromStdString(item.archiveAddress)));
        check(url, setup_.allowsFiles && feed.isLocalFile(), archiveName);
        if (item.archiveLength <= 0) {
            throw UpdateRefusal("The feed does not state how long the update archive is.");
        }
        if (item.archiveLength > setup_.limits.archiveBytes) {
            throw UpdateRefusal(
                fmt::format("The feed states an update archive of {} bytes, more than {}.",
                    item.archiveLength, sizeText(setup_.limits.archiveBytes)));
        }
        auto sink = std::make_unique<PartialArchive>(
            setup_.folder, url.toString(QUrl::FullyEncoded).toStdString(), item);
        if (sink->isWhole()) {
            later([arrived = std::move(arrived), path = sink->path()] { arrived(path); });
            return;
        }
        auto ended = [this, arrived = std::move(arrived), refused](const auto& refusal) {
            const auto path = static_cast<const PartialArchive&>(transfer_->sink()).path();
            // The archive is free for others before it is told of.
            transfer_.reset();
            if (refusal) {
                refused(*refusal);
            } else {
                arrived(path);
            }
        };
        auto progressed = [this, progress = std::move(progress)] {
            const auto& archive = transfer_->sink();
            progress(archive.received(), archive.expected());
        };
        transfer_ = std::make_unique<UpdateTransfer>(network(), setup_.timers,
            UpdateTransfer::Order{.address = url,
                .name = archiveName,
                .tls = tls(),
                .silence = setup_.limits.silence,
                .time = {},
                .redirects = setup_.limits.redirects,
                .progressed = std::move(progressed),
                .ended = std::move(ended)},
            std::move(sink));
    });
}

} // namespace ostrella
