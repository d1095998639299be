/// \file
/// Locales whose character classes and decimal point differ from those of the C locale.
#pragma once

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

/// A language and a character map, in which byte 0xFF may be another character.
struct LocaleKind {
    const char *name;
    const char *language;
    const char *character_map;
    const char *byte_ff; ///< such as "<U2003>"; null for the map's own
};

constexpr LocaleKind german_latin1 = {"GermanLatin1", "de_DE", "ISO-8859-1", nullptr};
constexpr LocaleKind german_latin9 = {"GermanLatin9", "de_DE", "ISO-8859-15", nullptr};
constexpr LocaleKind turkish = {"Turkish", "tr_TR", "ISO-8859-9", nullptr};
constexpr LocaleKind russian = {"Russian", "ru_RU", "KOI8-R", nullptr};
constexpr LocaleKind space_at_ff = {"SpaceAtFf", "de_DE", "ISO-8859-1", "<U2003>"};

/// Makes the character classes and the decimal point of a locale in a temporary directory, and
/// installs them for as long as it lives. available() is false where localedef cannot make them.
class TestLocale {
public:
    explicit TestLocale(const LocaleKind &kind)
    {
        std::string name = (std::filesystem::temp_directory_path() / "locale-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            return;
        }
        directory_ = name;
        write_source(kind.language);
        const std::string map = std::string("/usr/share/i18n/charmaps/") + kind.character_map;
        const std::string change =
            kind.byte_ff != nullptr ? std::string("s|^<U00FF> |") + kind.byte_ff + " |" : "";
        // Forced, because a locale usually has more categories than these two.
        const std::string command = "cd '" + directory_ + "' && { zcat " + map + ".gz || cat " +
                                    map + "; } | sed '" + change +
                                    "' >map && localedef -c -f ./map -i ./source ./corvella";
        static_cast<void>(!std::system(("{ " + command + "; } >/dev/null 2>&1").c_str()));
        setenv("LOCPATH", directory_.c_str(), 1);
        available_ = std::setlocale(LC_CTYPE, "corvella") != nullptr &&
                     std::setlocale(LC_NUMERIC, "corvella") != nullptr;
    }
    TestLocale(const TestLocale &) = delete;
    TestLocale &operator=(const TestLocale &) = delete;
    ~TestLocale()
    {
        std::setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
        std::error_code ignored;
        std::filesystem::remove_all(directory_, ignored);
    }

    bool available() const
    {
        return available_;
    }

private:
    void write_source(const char *language) const
    {
        std::ofstream source(directory_ + "/source");
        for (const char *const category : {"LC_CTYPE", "LC_NUMERIC"}) {
            source << category << "\ncopy \"" << language << "\"\nEND " << category << "\n";
        }
    }

    std::string directory_;
    bool available_ = false;
};
