#pragma once

#include "Models/Timers.h"
#include "Update/Appcast.h"

#include <QObject>
#include <QSslConfiguration>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

class QNetworkAccessManager;
class QUrl;

namespace ostrella {

class UpdateTransfer;

/// Fetches the feed and the archives it names: over HTTPS, also where the server sends one on, and
/// never more than is allowed. One fetch at a time; a new one ends that before it. Main thread. The
/// functions handed in are called later, never from within the call, and not at all once the fetch
/// was cancelled or this object is gone; exactly one of `arrived` and `refused` is the last.
class UpdateDownload final : public QObject {
    Q_OBJECT

public:
    struct Limits {
        /// Bytes of a feed.
        std::int64_t feedBytes = Appcast::mostBytes;
        /// Bytes of an archive, whatever the feed states.
        std::int64_t archiveBytes = std::int64_t{2} << 30;
        /// A server that sends no byte for so long has failed.
        std::chrono::duration<double> silence = std::chrono::seconds(30);
        /// For the whole of a feed, so that none can drip in for days.
        std::chrono::duration<double> feedTime = std::chrono::minutes(5);
        /// How often a server may send one on.
        int redirects = 10;
    };

    struct Setup {
        TimerService& timers = TimerService::system();
        /// Which authorities are trusted; absent: the system's.
        std::optional<QSslConfiguration> tls = {};
        /// Where archives lie while they come and until they are installed; made when needed.
        std::filesystem::path folder;
        /// Whether the feed may be a file, and with it the archives it names.
        bool allowsFiles = false;
        Limits limits = {};
    };

    /// The line for the log, "Update refused · " and the reason.
    using Refused = std::function<void(const std::string& text)>;
    /// Bytes that are here, of all.
    using Progress = std::function<void(std::int64_t received, std::int64_t expected)>;

    explicit UpdateDownload(Setup setup, QObject* parent = nullptr);
    ~UpdateDownload() override;

    /// Fetches the text of a feed.
    void fetchFeed(const std::string& address, std::function<void(const std::string& text)> arrived,
        Refused refused);

    /// Fetches the archive of an item of that feed, which has exactly the length the item states;
    /// its address may be relative to the feed's. What came before a cut, also in an earlier run of
    /// the program, is kept and continued if the server still has the same file; archives of other
    /// items are removed. An archive that is here already arrives at once. Nothing is known of its
    /// contents yet: check its signature.
    void fetchArchive(const std::string& feedAddress, const AppcastItem& item, Progress progress,
        std::function<void(const std::filesystem::path& archive)> arrived, Refused refused);

    /// Ends the fetch; what has come of an archive stays for the next time.
    void cancel();

    /// Removes what has come of any archive: it was refused, or is installed.
    void discardArchives();

private:
    static void check(const QUrl& address, bool mayBeFile, const char* name);
    QNetworkAccessManager& network();
    QSslConfiguration tls() const;
    void begin(const Refused& refused, const std::function<void()>& work);
    void later(std::function<void()> work);

    Setup setup_;
    /// Made when first needed, as is all of TLS: most starts of the program fetch nothing.
    QNetworkAccessManager* network_ = nullptr;
    /// There as long as the present fetch may tell of itself.
    std::shared_ptr<char> fetch_;
    std::unique_ptr<UpdateTransfer> transfer_;
};

} // namespace ostrella
