#include <cstddef>
#include <string>

#include "tests/support/options/model.h"

namespace {

/// The place in a text up to which a number has been read.
class Reader {
public:
    explicit Reader(const std::string &text) : text_(text) {}

    bool at_end() const
    {
        return place_ == text_.size();
    }
    /// Takes the next character when it is one of \p characters.
    bool take_one_of(const std::string &characters)
    {
        if (at_end() || characters.find(text_[place_]) == std::string::npos) {
            return false;
        }
        ++place_;
        return true;
    }
    /// Takes as many of \p characters as there are. \return how many.
    int take_all_of(const std::string &characters)
    {
        int taken = 0;
        while (take_one_of(characters)) {
            ++taken;
        }
        return taken;
    }
    /// Takes \p word, given in lower case, in letters of either case, or nothing.
    bool take_word(const std::string &word)
    {
        const std::size_t start = place_;
        for (const char letter : word) {
            const char upper = static_cast<char>(letter - 'a' + 'A');
            if (!take_one_of({letter, upper})) {
                place_ = start;
                return false;
            }
        }
        return true;
    }
    std::size_t place() const
    {
        return place_;
    }
    void go_back_to(std::size_t place)
    {
        place_ = place;
    }

private:
    const std::string &text_;
    std::size_t place_ = 0;
};

const std::string decimal_digits = "0123456789";
const std::string hexadecimal_digits = "0123456789abcdefABCDEF";
const std::string letters_digits_underscore = "0123456789_"
                                              "abcdefghijklmnopqrstuvwxyz"
                                              "ABCDEFGHIJKLMNOPQRSTUVWXYZ";

/// Digits with at most one point before, among or behind them, then an exponent or none.
bool take_digits_and_exponent(Reader &reader, const std::string &digits,
                              const std::string &exponent_letters)
{
    int number_of_digits = reader.take_all_of(digits);
    if (reader.take_one_of(".")) {
        number_of_digits += reader.take_all_of(digits);
    }
    if (number_of_digits == 0) {
        return false;
    }
    const std::size_t before_exponent = reader.place();
    if (reader.take_one_of(exponent_letters)) {
        reader.take_one_of("+-");
        if (reader.take_all_of(decimal_digits) == 0) {
            reader.go_back_to(before_exponent);
        }
    }
    return true;
}

void take_parenthesis(Reader &reader)
{
    const std::size_t start = reader.place();
    if (reader.take_one_of("(")) {
        reader.take_all_of(letters_digits_underscore);
        if (!reader.take_one_of(")")) {
            reader.go_back_to(start);
        }
    }
}

bool take_number(Reader &reader)
{
    reader.take_one_of("+-");
    if (reader.take_word("inf")) {
        reader.take_word("inity");
        return true;
    }
    if (reader.take_word("nan")) {
        take_parenthesis(reader);
        return true;
    }
    const std::size_t start = reader.place();
    if (reader.take_one_of("0") && reader.take_one_of("xX") &&
        take_digits_and_exponent(reader, hexadecimal_digits, "pP")) {
        return true;
    }
    reader.go_back_to(start);
    return take_digits_and_exponent(reader, decimal_digits, "eE");
}

} // namespace

// A number cut off in its middle ("-1e", "-0x", "-infi", "-nan(a") is no number for the scan; a
// shorter number with something behind it is a second item. Neither converts exactly one item, so
// it is enough to look for the longest number and for something behind it.
bool model_reads_as_number(const std::string &text)
{
    const std::string white_space = " \t\n\v\f\r";
    Reader reader(text);
    reader.take_all_of(white_space);
    if (!take_number(reader)) {
        return false;
    }
    reader.take_all_of(white_space);
    return reader.at_end();
}
