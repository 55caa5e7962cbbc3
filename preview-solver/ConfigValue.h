#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ostrella::preview {

/// The right-hand side of one option, divided into words; braces, commas and semicolons only
/// separate. Each reader throws Failure, with the option's name, for what it cannot read.
class ConfigValue {
public:
    ConfigValue(std::string name, std::string_view text);

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] const std::vector<std::string>& words() const { return words_; }
    /// The single word as written; fails if there is not exactly one.
    [[nodiscard]] const std::string& word() const;
    /// The single word in capitals.
    [[nodiscard]] std::string keyword() const;
    /// All words in capitals.
    [[nodiscard]] std::vector<std::string> keywords() const;
    [[nodiscard]] double number() const;
    /// A number above 0.
    [[nodiscard]] double positive() const;
    [[nodiscard]] std::vector<double> numbers() const;
    /// A whole number of at least `least`.
    [[nodiscard]] int integer(int least) const;
    /// YES or NO.
    [[nodiscard]] bool flag() const;
    /// Ends the run, naming the option, its value and `reason`.
    [[noreturn]] void refuse(const std::string& reason) const;

private:
    std::string name_;
    std::string text_;
    std::vector<std::string> words_;
};

/// `text` as a finite number, the whole of it; nothing else is accepted.
bool readNumber(std::string_view text, double& value);
/// ASCII capitals.
std::string upper(std::string_view text);

} // namespace ostrella::preview
