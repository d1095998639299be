/// \file
/// What the stand-ins of the Mac OS X frameworks are to answer, what they were asked, and whether
/// every object of theirs was given back.
///
/// An object used wrongly (released too often, used after its release, of the wrong kind) fails the
/// test that runs; a null object where there must be one ends the process, as it does there.
/// README.md lists what each call does with null, a wrong type and a buffer that is too small.
#pragma once

#include <CoreServices/CoreServices.h>
#include <SystemConfiguration/SystemConfiguration.h>
#include <cstdint>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

/// One call: its name, and its arguments as text.
struct FrameworkCall {
    std::string name;
    std::vector<std::string> arguments;
};

/// One value of the proxy settings. Each query gets an object of its own for it.
struct SettingValue {
    enum Kind { Text, Integer, Real, Truth };
    Kind kind;
    std::string text{};       ///< in UTF-8
    std::int64_t integer = 0; ///< of Integer and Truth
    double real = 0;
};
SettingValue text_value(const std::string &utf8);
SettingValue integer_value(std::int64_t value);
SettingValue real_value(double value);
SettingValue truth_value(bool value);

struct FrameworkStandIns {
    std::set<std::string> failing{}; ///< names of the calls that are to fail
    CFStringEncoding system_encoding = kCFStringEncodingUTF8;
    std::set<std::string> files{}; ///< the paths that FSPathMakeRef() finds
    OSStatus open_status = noErr;  ///< of both calls of Launch Services
    OSErr gestalt_error = noErr;
    SInt32 gestalt_response = 0;
    /// None at all: the system has no such dictionary.
    std::optional<std::map<std::string, SettingValue>> proxies{};

    std::vector<FrameworkCall> calls{};
    /// What Launch Services was to open, in order: "file PATH", "url TEXT" or "unknown file".
    std::vector<std::string> opened{};
    std::string opened_ref{}; ///< the 80 bytes of the reference that was opened last

    /// The arguments of every call of that name.
    std::vector<std::vector<std::string>> calls_of(const std::string &name) const;
};
extern FrameworkStandIns stand_ins;

/// The absolute paths of the parts of a bundle, in UTF-8; an empty one is a part that it does not
/// have. The calls for the support files, resources and plug-ins give paths below the bundle as
/// relative ones, as on the real system.
struct BundleParts {
    std::string bundle{};
    std::string executable{};
    std::string support_files{};
    std::string resources{};
    std::string plug_ins{};
    std::map<std::string, std::string> resource_paths{}; ///< by name
};

void set_main_bundle(const BundleParts &parts);
void load_bundle(const std::string &identifier, const BundleParts &parts);
/// Whoever still uses the bundle afterwards fails the test.
void unload_bundle(const std::string &identifier);

/// The objects that callers have not given back: "string TEXT", "url TEXT" and so on.
std::vector<std::string> left_over_objects();

/// Forgets every object, setting and call. There is no main bundle then, and none loaded.
void reset_stand_ins();

/// Begins every test with untouched stand-ins, and fails one that leaves an object over.
class FrameworksTest : public testing::Test {
protected:
    FrameworksTest()
    {
        reset_stand_ins();
    }
    void TearDown() override
    {
        EXPECT_EQ(left_over_objects(), expected_left_overs);
    }

    /// Objects that stay over by design.
    std::vector<std::string> expected_left_overs;
};
