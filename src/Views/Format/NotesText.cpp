#include "Views/Format/NotesText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

namespace ostrella::NotesText {

namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

std::string lowered(std::string_view word) {
    std::string result(word);
    for (char& c : result) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return result;
}

template <std::size_t count>
bool isOneOf(std::string_view name, const std::array<std::string_view, count>& names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// What is no text at all.
constexpr std::array<std::string_view, 6> withoutText{
    "script", "style", "head", "title", "template", "svg"};
/// What stands apart by an empty line.
constexpr std::array<std::string_view, 14> apart{
    "p", "h1", "h2", "h3", "h4", "h5", "h6", "ul", "ol", "dl", "table", "blockquote", "pre", "hr"};
/// What begins a line.
constexpr std::array<std::string_view, 12> lines{"br", "div", "tr", "dt", "dd", "section",
    "article", "header", "footer", "main", "body", "figure"};

constexpr std::array<std::pair<std::string_view, std::string_view>, 18> entities{{
    {"amp", "&"},
    {"lt", "<"},
    {"gt", ">"},
    {"quot", "\""},
    {"apos", "'"},
    {"nbsp", "\u00a0"},
    {"hellip", "…"},
    {"mdash", "—"},
    {"ndash", "–"},
    {"bull", "•"},
    {"middot", "·"},
    {"times", "×"},
    {"copy", "©"},
    {"reg", "®"},
    {"lsquo", "‘"},
    {"rsquo", "’"},
    {"ldquo", "“"},
    {"rdquo", "”"},
}};

std::string encoded(std::uint32_t code) {
    const bool isCharacter =
        code >= 0x20 && code <= 0x10FFFF && (code < 0x7F || code >= 0xA0) && (code >> 11) != 0x1B;
    if (!isCharacter) {
        return {};
    }
    const auto tail = [code](
                          int shift) { return static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
    if (code < 0x80) {
        return {static_cast<char>(code)};
    }
    if (code < 0x800) {
        return {static_cast<char>(0xC0 | (code >> 6)), tail(0)};
    }
    if (code < 0x10000) {
        return {static_cast<char>(0xE0 | (code >> 12)), tail(6), tail(0)};
    }
    return {static_cast<char>(0xF0 | (code >> 18)), tail(12), tail(6), tail(0)};
}

/// Gathers text, with breaks that are made only between pieces of it.
class Writer {
public:
    explicit Writer(std::size_t most) : most_(most) {}

    bool isFull() const { return text_.size() > most_; }

    void breakLine(int count) { breaks_ = std::max(breaks_, count); }
    void beginPoint() {
        breakLine(1);
        isPoint_ = true;
    }
    void blank() { blank_ = true; }
    void add(std::string_view piece) {
        if (piece.empty()) {
            return;
        }
        if (breaks_ > 0 && !text_.empty()) {
            text_.append(static_cast<std::size_t>(breaks_), '\n');
        } else if (blank_ && !text_.empty()) {
            text_ += ' ';
        }
        if (std::exchange(isPoint_, false)) {
            text_ += "• ";
        }
        breaks_ = 0;
        blank_ = false;
        text_ += piece;
    }

    std::string take() && { return std::move(text_); }

private:
    std::size_t most_;
    std::string text_;
    int breaks_ = 0;
    bool blank_ = false;
    bool isPoint_ = false;
};

bool isHTML(std::string_view text) {
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        const char next = text[i + 1];
        if (text[i] == '<' && (isLetter(next) || next == '/' || next == '!')) {
            return true;
        }
    }
    return false;
}

/// Behind the sign that ends a tag which begins at `begin`; signs within quotes end none.
std::size_t endOfTag(std::string_view text, std::size_t begin) {
    char quote = 0;
    for (std::size_t i = begin; i < text.size(); ++i) {
        const char c = text[i];
        if (quote != 0) {
            quote = c == quote ? '\0' : quote;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '>') {
            return i + 1;
        }
    }
    return text.size();
}

/// Behind the end of an element without text.
std::size_t endOfElement(std::string_view text, std::size_t begin, const std::string& name) {
    for (std::size_t i = text.find("</", begin); i != std::string_view::npos;
         i = text.find("</", i + 2)) {
        if (lowered(text.substr(i + 2, name.size())) == name) {
            return endOfTag(text, i);
        }
    }
    return text.size();
}

std::size_t readTag(std::string_view text, std::size_t begin, Writer& writer) {
    if (text.substr(begin, 4) == "<!--") {
        const std::size_t end = text.find("-->", begin + 4);
        return end == std::string_view::npos ? text.size() : end + 3;
    }
    const std::size_t end = endOfTag(text, begin);
    const bool closes = text.substr(begin + 1, 1) == "/";
    std::size_t nameEnd = begin + (closes ? 2 : 1);
    const std::size_t nameBegin = nameEnd;
    while (nameEnd < end &&
           (isLetter(text[nameEnd]) || (text[nameEnd] >= '0' && text[nameEnd] <= '9'))) {
        ++nameEnd;
    }
    const std::string name = lowered(text.substr(nameBegin, nameEnd - nameBegin));
    if (!closes && isOneOf(name, withoutText)) {
        return endOfElement(text, end, name);
    }
    if (isOneOf(name, apart)) {
        writer.breakLine(2);
    } else if (isOneOf(name, lines)) {
        writer.breakLine(1);
    } else if (name == "li" && !closes) {
        writer.beginPoint();
    } else if (name == "td" || name == "th") {
        writer.blank();
    }
    return end;
}

std::size_t readEntity(std::string_view text, std::size_t begin, Writer& writer) {
    constexpr std::size_t longest = 10;
    const std::size_t length = text.substr(begin, longest).find(';');
    const std::string_view name =
        length == std::string_view::npos ? "" : text.substr(begin + 1, length - 1);
    if (name.size() > 1 && name[0] == '#') {
        const bool isHexadecimal = name[1] == 'x' || name[1] == 'X';
        const char* first = name.data() + (isHexadecimal ? 2 : 1);
        const char* last = name.data() + name.size();
        std::uint32_t code = 0;
        const auto [end, error] = std::from_chars(first, last, code, isHexadecimal ? 16 : 10);
        if (error == std::errc() && end == last) {
            writer.add(encoded(code));
            return begin + length + 1;
        }
    }
    for (const auto& [known, character] : entities) {
        if (known == name) {
            writer.add(character);
            return begin + length + 1;
        }
    }
    writer.add("&");
    return begin + 1;
}

std::string textOfHTML(std::string_view text, std::size_t most) {
    Writer writer(most);
    for (std::size_t i = 0; i < text.size() && !writer.isFull();) {
        const char next = i + 1 < text.size() ? text[i + 1] : '\0';
        if (text[i] == '<' && (isLetter(next) || next == '/' || next == '!' || next == '?')) {
            i = readTag(text, i, writer);
        } else if (text[i] == '&') {
            i = readEntity(text, i, writer);
        } else if (isBlank(text[i])) {
            writer.blank();
            ++i;
        } else {
            std::size_t end = i + 1;
            while (
                end < text.size() && text[end] != '<' && text[end] != '&' && !isBlank(text[end])) {
                ++end;
            }
            writer.add(text.substr(i, end - i));
            i = end;
        }
    }
    return std::move(writer).take();
}

/// Without what is no text: carriage returns and other signs of control.
std::string cleaned(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        if (c == '\n' || c == '\t' || (static_cast<unsigned char>(c) >= ' ' && c != '\x7f')) {
            result += c;
        }
    }
    return result;
}

std::string trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return std::string(text);
}

/// The first bytes of a text, whole characters only.
std::string_view begins(std::string_view text, std::size_t most) {
    std::size_t end = std::min(text.size(), most);
    while (end > 0 && end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
        --end;
    }
    return text.substr(0, end);
}

} // namespace

std::string plain(std::string_view plainOrHTML, std::size_t most) {
    const std::string text = trimmed(
        cleaned(isHTML(plainOrHTML) ? textOfHTML(plainOrHTML, most) : std::string(plainOrHTML)));
    return text.size() <= most ? text : trimmed(begins(text, most)) + "…";
}

} // namespace ostrella::NotesText
