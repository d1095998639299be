/// \file
/// A locale with a decimal comma in which bytes of 0x80 and above are letters.
#pragma once

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

/// Installs the German ISO 8859-1 locale for as long as it lives. Where the system has none, it is
/// made by localedef in a temporary directory; available() is false where that is impossible too.
class Latin1Locale {
public:
    Latin1Locale()
    {
        available_ =
            install("de_DE.ISO8859-1") || install("de_DE.ISO-8859-1") || make_and_install();
    }
    Latin1Locale(const Latin1Locale &) = delete;
    Latin1Locale &operator=(const Latin1Locale &) = delete;
    ~Latin1Locale()
    {
        std::setlocale(LC_ALL, "C");
        if (!directory_.empty()) {
            unsetenv("LOCPATH");
            std::error_code ignored;
            std::filesystem::remove_all(directory_, ignored);
        }
    }

    bool available() const
    {
        return available_;
    }

private:
    static bool install(const char *name)
    {
        return std::setlocale(LC_ALL, name) != nullptr;
    }

    bool make_and_install()
    {
        std::string name = (std::filesystem::temp_directory_path() / "locale-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            return false;
        }
        directory_ = name;
        const std::string command =
            "localedef -i de_DE -f ISO-8859-1 '" + directory_ + "/corvella_latin1' >/dev/null 2>&1";
        if (std::system(command.c_str()) != 0) {
            return false;
        }
        setenv("LOCPATH", directory_.c_str(), 1);
        return install("corvella_latin1");
    }

    std::string directory_;
    bool available_ = false;
};
