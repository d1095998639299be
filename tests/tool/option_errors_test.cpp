/// \file
/// Usage errors: what is printed, byte for byte, and what is not.
#include <gtest/gtest.h>

#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;

void expect_error(const Arguments &arguments, const std::string &text)
{
    const ProgramResult result = run_corvella(arguments);
    EXPECT_EQ(result.exit_status, 2) << text;
    EXPECT_EQ(result.out, "") << text;
    EXPECT_EQ(result.err, usage_error_text(text));
}

Arguments update_with(const Arguments &more)
{
    Arguments arguments = {"update", "-product", "P", "-productline", "L"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

TEST(OptionError, NamesAnUnknownOptionAsTyped)
{
    for (const std::string option : {"-bogus", "--bogus", "+bogus", "-x", "+x", "--zz", "-helpless",
                                     "--header2", "--5", "+5", "-5x", "-\xff"}) {
        expect_error({"describe", option}, "unknown option " + option);
        expect_error({option, "describe"}, "unknown option " + option);
    }
}

TEST(OptionError, NamesTwoMeaningsOfAnAmbiguousOption)
{
    for (const std::string option : {"-p", "--prox", "+pro", "-proxy-"}) {
        const std::string names =
            option == "-proxy-" ? "-proxy-user or -proxy-pass" : "-proxy or -proxy-user";
        expect_error({"describe", option},
                     "ambiguous option " + option + " (could be " + names + ")");
    }
    expect_error({"-he", "describe"}, "ambiguous option -he (could be -header or -help)");
    expect_error({"describe", "+"}, "ambiguous option + (could be -h or -proxy)");
}

TEST(OptionError, NeverQuotesAnArgument)
{
    const struct {
        const char *option;
        const char *text;
    } cases[] = {
        {"-psas=secret", "unknown option -psas"},
        {"--psas=secret", "unknown option --psas"},
        {"+psas=secret", "unknown option +psas"},
        {"-x=secret", "unknown option -x"},
        {"--p=secret", "ambiguous option --p (could be -proxy or -proxy-user)"},
        {"+proxy-=secret", "ambiguous option +proxy- (could be -proxy-user or -proxy-pass)"},
        {"-=secret", "ambiguous option - (could be -h or -proxy)"},
        {"--=secret", "ambiguous option -- (could be -h or -proxy)"},
        {"-quiet=secret", "option -quiet takes no argument"},
        {"--help=secret", "option --help takes no argument"},
        {"+h=secret", "option +h takes no argument"},
        {"-version=secret", "option -version takes no argument"},
        {"-header=", "option -header takes no argument"},
    };
    for (const auto &[option, text] : cases) {
        expect_error({"get", option, "http://127.0.0.1/"}, text);
    }
}

TEST(OptionError, NamesAnOptionWithoutItsArgument)
{
    for (const std::string option :
         {"-output", "-proxy", "-proxy-user", "--proxy-pass", "+user", "-pass", "-max-time",
          "--data", "-type", "-out", "--output=", "-pass="}) {
        const std::string name = option.substr(0, option.find('='));
        expect_error({"post", "http://127.0.0.1/", option},
                     "option " + name + " needs an argument");
    }
}

TEST(OptionError, IsTheFirstOfSeveral)
{
    expect_error({"-bogus", "get", "-p", "-quiet=1", "-output"}, "unknown option -bogus");
    expect_error({"get", "-p", "-bogus", "-proxy", "malformed"},
                 "ambiguous option -p (could be -proxy or -proxy-user)");
}

// A number is an operand, and not the option that the parser stopped at.
TEST(OptionError, PassesOverOperands)
{
    expect_error({"post", "-5", "-pro"}, "ambiguous option -pro (could be -proxy or -proxy-user)");
    expect_error({"post", "-", "-5", "-x", "-7"}, "unknown option -x");
    expect_error({"post", "http://127.0.0.1/", "--", "-x"}, "A form field is given as NAME=VALUE.");
}

TEST(OptionError, IsFramedWhereverAutomatedStands)
{
    for (const Arguments &arguments :
         {Arguments{"-automated", "-bogus"}, Arguments{"-bogus", "-automated"},
          Arguments{"-p", "get", "-automated"}}) {
        const ProgramResult result = run_corvella(arguments);
        EXPECT_EQ(result.exit_status, 2);
        EXPECT_EQ(result.out.rfind("CORVELLATESTError: ", 0), 0U) << result.out;
        EXPECT_TRUE(contains(result.out, " option -")) << result.out;
    }
}

TEST(OptionError, OfTheProgramsVersionWithACommand)
{
    for (const std::string command : {"get", "post", "describe", "open"}) {
        expect_error({command, "-version"}, "-version does not go with " + command + ".");
        expect_error({"-version", command}, "-version does not go with " + command + ".");
    }
    expect_error({"-version", "fetch"}, "There is no command 'fetch'.");
    expect_error({"-version", "5.1"}, "There is no command '5.1'.");
}

TEST(OptionError, OfAProductsVersionThatIsMissing)
{
    const std::string missing = "option -version needs an argument";
    expect_error(update_with({"-version"}), missing);
    expect_error(update_with({"-version="}), missing);
    expect_error(update_with({"--version=", "5.1"}), missing);
    expect_error(update_with({}), "update needs -product, -productline and -version.");
}

TEST(OptionError, OfAProductsVersionThatIsNotANumber)
{
    for (const char *const version :
         {"", ".", "..", "1.2.3", "5x", "-1", "+1", "1e3", " 5", "5 ", "inf", "5,1"}) {
        expect_error(update_with({"-version", version}), "-version takes a number such as 5.1.");
    }
}

// The query sends a single-precision number with three decimals.
TEST(OptionError, OfAProductsVersionThatWouldChange)
{
    for (const std::string version : {"5.1234", "0.0625", "1.9996", "16777217", "99999.123",
                                      "999999999999999999999999999999999999999999"}) {
        expect_error(update_with({"-version", version}),
                     "-version " + version + " has more digits than can be sent.");
    }
}

TEST(OptionError, OfTheTimeLimit)
{
    for (const char *const seconds : {"0", "", ".", "-1", "0.0", "0.0009", "1000000.1", "1e3",
                                      "inf", "nan", "ten", "1,5", "5s", " 5", "99999999999"}) {
        for (const char *const command : {"get", "post", "update"}) {
            expect_error({command, "-max-time", seconds},
                         "-max-time takes seconds from 0.001 to 1000000.");
        }
    }
    expect_error({"describe", "-max-time", "5"}, "-max-time does not go with describe.");
}

TEST(OptionError, OfTheBodyOfAPost)
{
    const std::string url = "http://127.0.0.1/";
    expect_error({"post", url, "a=b", "-data", "file"},
                 "-data and form fields exclude each other.");
    expect_error({"post", url, "a=b", "-type", "text/plain"}, "-type needs -data.");
    expect_error({"get", url, "-data", "file"}, "-data does not go with get.");
    expect_error({"update", "-type", "text/plain"}, "-type does not go with update.");
}

TEST(OptionError, OfCredentials)
{
    const std::string url = "http://127.0.0.1/";
    const std::string long_text(256, 'x');
    const std::string both = "-user excludes -proxy-user and -proxy-pass.";
    const std::string name = "-user takes a name of 1 to 255 bytes without a colon.";
    const std::string password = "-pass takes a password of 1 to 255 bytes.";
    expect_error({"get", url, "-pass", "p"}, "-pass needs -user.");
    expect_error({"get", url, "-user", "u", "-pass", "p", "-proxy-user", "v"}, both);
    expect_error({"get", url, "-user", "u", "-proxy-pass", "-"}, both);
    expect_error({"get", url, "-user", "", "-pass", "p"}, name);
    expect_error({"get", url, "-user", "a:b", "-pass", "p"}, name);
    expect_error({"get", url, "-user", long_text, "-pass", "p"}, name);
    expect_error({"get", url, "-user", "u", "-pass", ""}, password);
    expect_error({"get", url, "-user", "u", "-pass", long_text}, password);
    expect_error({"describe", "-user", "u"}, "-user does not go with describe.");
}

TEST(OptionError, OfTwoReadersOfStandardInput)
{
    const std::string text = "Standard input can be read for one option only.";
    const Arguments logins[] = {
        {"-user", "u"}, {"-user", "u", "-pass", "-"}, {"-proxy-user", "u", "-proxy-pass", "-"}};
    for (const Arguments &login : logins) {
        Arguments arguments = {"post", "http://127.0.0.1/", "-data", "-"};
        arguments.insert(arguments.end(), login.begin(), login.end());
        expect_error(arguments, text);
    }
}

} // namespace
