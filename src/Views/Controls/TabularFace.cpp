#include "Views/Controls/TabularFace.h"

#include <QtEndian>

#include <algorithm>
#include <map>
#include <string>

namespace ostrella::TabularFace {

namespace {

/// Tables of a font that shapes and draws text, with outlines of either kind.
constexpr const char* tableNames[] = {"CFF ", "CFF2", "GDEF", "GPOS", "GSUB", "OS/2", "cmap",
    "cvt ", "fpgm", "gasp", "glyf", "head", "hhea", "hmtx", "loca", "maxp", "post", "prep"};

void append16(QByteArray& bytes, quint16 value) {
    char big[2];
    qToBigEndian(value, big);
    bytes.append(big, 2);
}

void append32(QByteArray& bytes, quint32 value) {
    char big[4];
    qToBigEndian(value, big);
    bytes.append(big, 4);
}

/// Switches the feature of tabular digits from asked for to always on. False without one.
bool turnOn(QByteArray& substitutions) {
    constexpr int headerSize = 10;
    constexpr int featureOffsetAt = 6;
    constexpr int recordSize = 6;
    if (substitutions.size() < headerSize)
        return false;
    char* data = substitutions.data();
    const qsizetype features = qFromBigEndian<quint16>(data + featureOffsetAt);
    if (features + 2 > substitutions.size())
        return false;
    const qsizetype count = qFromBigEndian<quint16>(data + features);
    if (features + 2 + count * recordSize > substitutions.size())
        return false;
    bool found = false;
    for (qsizetype i = 0; i < count; ++i) {
        char* tag = data + features + 2 + i * recordSize;
        if (std::equal(tag, tag + 4, "rlig"))
            return false;
        if (std::equal(tag, tag + 4, "tnum")) {
            std::copy_n("rlig", 4, tag);
            found = true;
        }
    }
    return found;
}

/// A table of names with the family, the style and what follows from them, for Windows' platform
/// in UTF-16, which every reader of fonts knows.
QByteArray names(const QString& family, const QString& style) {
    const std::map<quint16, QString> entries{{1, family}, {2, style},
        {3, family + QLatin1Char(' ') + style}, {4, family + QLatin1Char(' ') + style},
        {6, QString(family + QLatin1Char('-') + style).remove(QLatin1Char(' '))}};
    constexpr int recordSize = 12;
    QByteArray table;
    QByteArray texts;
    append16(table, 0);
    append16(table, static_cast<quint16>(entries.size()));
    append16(table, static_cast<quint16>(6 + entries.size() * recordSize));
    for (const auto& [id, text] : entries) {
        append16(table, 3);
        append16(table, 1);
        append16(table, 0x0409);
        append16(table, id);
        append16(table, static_cast<quint16>(text.size() * 2));
        append16(table, static_cast<quint16>(texts.size()));
        for (const QChar unit : text)
            append16(texts, unit.unicode());
    }
    return table + texts;
}

quint32 checksum(const QByteArray& table) {
    quint32 sum = 0;
    for (qsizetype at = 0; at < table.size(); at += 4) {
        char word[4] = {};
        std::copy_n(table.data() + at, std::min<qsizetype>(4, table.size() - at), word);
        sum += qFromBigEndian<quint32>(word);
    }
    return sum;
}

/// The tables as a font file. Checksums are those of the tables as they stand.
QByteArray assemble(const std::map<std::string, QByteArray>& tables) {
    const bool postScript = !tables.contains("glyf");
    const quint16 count = static_cast<quint16>(tables.size());
    quint16 log = 0;
    while ((2U << log) <= count)
        ++log;
    const quint16 searchRange = static_cast<quint16>(16U << log);
    QByteArray bytes;
    append32(bytes, postScript ? 0x4F54544FU : 0x00010000U);
    append16(bytes, count);
    append16(bytes, searchRange);
    append16(bytes, log);
    append16(bytes, static_cast<quint16>(count * 16 - searchRange));
    quint32 offset = 12U + 16U * count;
    for (const auto& [tag, table] : tables) {
        bytes.append(tag.data(), 4);
        append32(bytes, checksum(table));
        append32(bytes, offset);
        append32(bytes, static_cast<quint32>(table.size()));
        offset += (static_cast<quint32>(table.size()) + 3U) & ~3U;
    }
    for (const auto& [tag, table] : tables) {
        bytes += table;
        while (bytes.size() % 4 != 0)
            bytes += '\0';
    }
    return bytes;
}

} // namespace

bool hasEqualDigits(const QRawFont& face) {
    const QList<quint32> digits = face.glyphIndexesForString(QStringLiteral("0123456789"));
    const QList<QPointF> advances = face.advancesForGlyphIndexes(digits);
    return std::all_of(advances.begin(), advances.end(),
        [&](const QPointF& advance) { return qFuzzyCompare(advance.x(), advances.front().x()); });
}

QByteArray file(const QRawFont& face, const QString& family) {
    std::map<std::string, QByteArray> tables;
    for (const char* name : tableNames) {
        const QByteArray table = face.fontTable(name);
        if (!table.isEmpty())
            tables.emplace(name, table);
    }
    const auto substitutions = tables.find("GSUB");
    if (substitutions == tables.end() || !turnOn(substitutions->second))
        return {};
    tables["name"] = names(family, face.styleName());
    return assemble(tables);
}

} // namespace ostrella::TabularFace
