#include "Update/Appcast.h"

#include "Update/PlainLine.h"
#include "Update/UpdateRefusal.h"
#include "Update/VersionOrder.h"

#include <QString>
#include <QStringDecoder>
#include <QUrl>
#include <QXmlStreamReader>

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace ostrella::Appcast {

namespace {

const QString sparkle = QStringLiteral("http://www.andymatuschak.org/xml-namespaces/sparkle");

/// The parser compares each attribute of an element with each other one, so that one element of
/// megabytes would keep it busy for minutes.
constexpr std::size_t longestTag = 64 << 10;
constexpr int mostAttributes = 64;
/// Each prefix is looked for among all names declared around it, so that nested elements would keep
/// it busy for hours. A feed has five levels.
constexpr int mostLevels = 32;
/// They are copied with every step that is shown.
constexpr qsizetype longestNotes = 64 << 10;
constexpr std::size_t longestVersion = 64;
constexpr qsizetype longestTitle = 256;

/// Goes over the marks of the text, before the parser does, and refuses what could make that one
/// work without measure: document types (with their entities), huge elements and deep ones.
void screenMarks(std::string_view xml) {
    const auto skip = [&](std::string_view start, std::string_view end) {
        if (!xml.starts_with(start)) {
            return false;
        }
        xml.remove_prefix(start.size());
        const auto at = xml.find(end);
        xml.remove_prefix(at == xml.npos ? xml.size() : at + end.size());
        return true;
    };
    int level = 0;
    for (auto at = xml.find('<'); at != xml.npos; at = xml.find('<')) {
        xml.remove_prefix(at);
        if (skip("<!--", "-->") || skip("<![CDATA[", "]]>") || skip("<?", "?>")) {
            continue;
        }
        if (xml.starts_with("<!")) {
            throw UpdateRefusal("The update feed has a document type, which no feed needs.");
        }
        char quote = 0;
        int attributes = 0;
        const auto isEnd = [&](char c) {
            if (quote != 0) {
                attributes += c == quote ? 1 : 0;
                quote = c == quote ? '\0' : quote;
            } else if (c == '"' || c == '\'') {
                quote = c;
            }
            return quote == 0 && c == '>';
        };
        const auto end = std::find_if(xml.begin(), xml.end(), isEnd);
        const auto length = static_cast<std::size_t>(end - xml.begin());
        if (length > longestTag) {
            throw UpdateRefusal("The update feed has an element of more than 64 KiB.");
        }
        if (attributes > mostAttributes) {
            throw UpdateRefusal("The update feed has an element of more than 64 attributes.");
        }
        if (xml.starts_with("</")) {
            --level;
        } else if (length == 0 || xml[length - 1] != '/') {
            ++level;
        }
        if (level > mostLevels) {
            throw UpdateRefusal("The update feed has more than 32 elements within one another.");
        }
        xml.remove_prefix(length);
    }
}

QString decoded(std::string_view xml) {
    if (xml.size() > mostBytes) {
        throw UpdateRefusal("The update feed is larger than 4 MiB.");
    }
    if (xml.find_first_not_of(" \t\r\n") == xml.npos) {
        throw UpdateRefusal("The update feed is empty.");
    }
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text =
        decoder.decode(QByteArrayView(xml.data(), static_cast<qsizetype>(xml.size())));
    if (decoder.hasError() || text.contains(QChar(0))) {
        throw UpdateRefusal("The update feed is not a text in UTF-8.");
    }
    return text;
}

std::string line(const QString& text) {
    return plainLine(text, longestTitle);
}

/// The notes, cut off where they are longer than anybody reads.
std::string notesIn(const QString& text) {
    QString notes = text.trimmed().left(longestNotes);
    if (!notes.isEmpty() && notes.back().isHighSurrogate()) {
        notes.chop(1);
    }
    return notes.toStdString();
}

/// A version goes into log lines, names of files and comparisons: letters, digits and a few marks.
std::string versionIn(const QString& text) {
    const std::string version = text.simplified().toStdString();
    const bool isPlain = std::all_of(version.begin(), version.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               std::string_view(" .+-_()").find(c) != std::string_view::npos;
    });
    return isPlain && version.size() <= longestVersion ? version : std::string();
}

/// An address that a browser may be sent to.
std::string pageAddress(const QString& text) {
    const QUrl address(text.trimmed(), QUrl::StrictMode);
    const bool isPage =
        address.isValid() && !address.host().isEmpty() &&
        (address.scheme() == QLatin1String("https") || address.scheme() == QLatin1String("http"));
    return isPage ? address.toString(QUrl::FullyEncoded).toStdString() : std::string();
}

struct Enclosure {
    /// How closely it is meant for this platform: 0 not at all, 1 its family, 2 itself.
    int closeness = 0;
    std::string version;
    std::string shortVersion;
    std::string address;
    std::int64_t length = 0;
    std::string signature;
};

class Reader {
public:
    Reader(const QString& text, std::string_view platform, std::string_view presentVersion)
        : xml_(text),
          platform_(platform),
          family_(platform.substr(0, platform.find('-'))),
          present_(presentVersion) {}

    std::vector<AppcastItem> read() {
        bool hasChannel = false;
        if (xml_.readNextStartElement()) {
            if (xml_.name() != QLatin1String("rss")) {
                throw UpdateRefusal("The update feed is not an appcast.");
            }
            while (xml_.readNextStartElement()) {
                if (xml_.name() == QLatin1String("channel")) {
                    hasChannel = true;
                    channel();
                } else {
                    xml_.skipCurrentElement();
                }
            }
        }
        while (!xml_.atEnd()) {
            xml_.readNext();
        }
        if (xml_.hasError()) {
            throw UpdateRefusal(fmt::format("The update feed is not well-formed, line {}: {}",
                xml_.lineNumber(), line(xml_.errorString())));
        }
        if (!hasChannel) {
            throw UpdateRefusal("The update feed is not an appcast.");
        }
        return std::move(items_);
    }

private:
    void channel() {
        while (xml_.readNextStartElement()) {
            if (xml_.name() == QLatin1String("item")) {
                item();
            } else {
                xml_.skipCurrentElement();
            }
        }
    }

    void item() {
        item_ = {};
        best_ = {};
        hasEnclosure_ = false;
        isInformational_ = false;
        isInChannel_ = false;
        notesAreForeign_ = false;
        notesAddressIsForeign_ = false;
        while (xml_.readNextStartElement()) {
            if (xml_.namespaceUri() == sparkle) {
                sparkleElement();
            } else {
                plainElement();
            }
        }
        take();
    }

    void sparkleElement() {
        const auto name = xml_.name();
        if (name == QLatin1String("version")) {
            item_.version = versionIn(text());
        } else if (name == QLatin1String("shortVersionString")) {
            item_.displayVersionString = versionIn(text());
        } else if (name == QLatin1String("releaseNotesLink")) {
            const bool foreign = isForeign();
            const std::string address = pageAddress(text());
            if (item_.notesAddress.empty() || (notesAddressIsForeign_ && !foreign)) {
                item_.notesAddress = address;
                notesAddressIsForeign_ = foreign;
            }
        } else if (name == QLatin1String("channel")) {
            isInChannel_ = !text().trimmed().isEmpty();
        } else if (name == QLatin1String("informationalUpdate")) {
            informationalUpdate();
        } else {
            xml_.skipCurrentElement(); // among them deltas, with enclosures of their own
        }
    }

    void plainElement() {
        const auto name = xml_.name();
        if (name == QLatin1String("title")) {
            item_.title = line(text());
        } else if (name == QLatin1String("description")) {
            const bool foreign = isForeign();
            const std::string notes = notesIn(text());
            if (item_.notes.empty() || (notesAreForeign_ && !foreign)) {
                item_.notes = notes;
                notesAreForeign_ = foreign;
            }
        } else if (name == QLatin1String("link")) {
            item_.infoAddress = pageAddress(text());
        } else if (name == QLatin1String("enclosure")) {
            enclosure();
        } else {
            xml_.skipCurrentElement();
        }
    }

    QString text() { return xml_.readElementText(QXmlStreamReader::SkipChildElements); }

    /// Whether the present element is in another language than this program's.
    bool isForeign() const {
        const auto language = xml_.attributes().value(QLatin1String("xml:lang"));
        return !language.isEmpty() && !language.startsWith(QLatin1String("en"));
    }

    /// Without versions inside it holds for everyone; otherwise for those it names.
    void informationalUpdate() {
        bool namesVersions = false;
        bool namesThis = false;
        while (xml_.readNextStartElement()) {
            const bool isExact = xml_.name() == QLatin1String("version");
            const bool isBound = xml_.name() == QLatin1String("belowVersion");
            if (xml_.namespaceUri() != sparkle || !(isExact || isBound)) {
                xml_.skipCurrentElement();
                continue;
            }
            namesVersions = true;
            const auto order = VersionOrder::compare(present_, versionIn(text()));
            namesThis = namesThis || (isExact ? order == 0 : order < 0);
        }
        isInformational_ = !namesVersions || namesThis;
    }

    void enclosure() {
        const auto attributes = xml_.attributes();
        const auto system =
            attributes.value(sparkle, QStringLiteral("os")).toString().toStdString();
        Enclosure found;
        found.closeness = system == platform_ ? 2 : system == family_ ? 1 : 0;
        found.version = versionIn(attributes.value(sparkle, QStringLiteral("version")).toString());
        found.shortVersion =
            versionIn(attributes.value(sparkle, QStringLiteral("shortVersionString")).toString());
        found.address = attributes.value(QLatin1String("url")).trimmed().toString().toStdString();
        found.signature = attributes.value(sparkle, QStringLiteral("edSignature"))
                              .trimmed()
                              .toString()
                              .toStdString();
        bool isNumber = false;
        const qint64 length =
            attributes.value(QLatin1String("length")).trimmed().toLongLong(&isNumber);
        found.length = isNumber && length > 0 ? length : 0;
        hasEnclosure_ = true;
        if (found.closeness > best_.closeness && !found.address.empty()) {
            best_ = std::move(found);
        }
        xml_.skipCurrentElement();
    }

    void take() {
        const bool isElsewhere = hasEnclosure_ && best_.closeness == 0;
        const bool isEmpty = !hasEnclosure_ && item_.infoAddress.empty();
        if (isInChannel_ || isElsewhere || isEmpty || xml_.hasError()) {
            return;
        }
        if (item_.version.empty()) {
            item_.version = best_.version;
        }
        if (item_.displayVersionString.empty()) {
            item_.displayVersionString =
                best_.shortVersion.empty() ? item_.version : best_.shortVersion;
        }
        if (item_.version.empty()) {
            return;
        }
        if (!isInformational_) {
            item_.archiveAddress = std::move(best_.address);
            item_.archiveLength = best_.length;
            item_.signature = std::move(best_.signature);
        }
        items_.push_back(std::move(item_));
    }

    QXmlStreamReader xml_;
    std::string_view platform_;
    std::string_view family_;
    std::string_view present_;
    std::vector<AppcastItem> items_;

    // Of the item that is being read.
    AppcastItem item_;
    Enclosure best_;
    bool hasEnclosure_ = false;
    bool isInformational_ = false;
    bool isInChannel_ = false;
    bool notesAreForeign_ = false;
    bool notesAddressIsForeign_ = false;
};

} // namespace

std::string platform() {
#if defined(__aarch64__)
    return "linux-arm64";
#else
    return "linux-x86_64";
#endif
}

std::vector<AppcastItem> items(
    std::string_view xml, std::string_view platform, std::string_view presentVersion) {
    const QString text = decoded(xml);
    screenMarks(xml);
    return Reader(text, platform, presentVersion).read();
}

} // namespace ostrella::Appcast
