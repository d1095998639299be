// That the stand-ins notice what they are there to notice.
#include "tests/frameworks/stand_ins.h"

#include <climits>
#include <csignal>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/harness/capture.h"

namespace {

using Texts = std::vector<std::string>;

class StandIns : public FrameworksTest {};

CFStringRef string_of(const char *text)
{
    return CFStringCreateWithCString(kCFAllocatorDefault, text, kCFStringEncodingUTF8);
}

CFURLRef url_of(const std::string &text)
{
    return CFURLCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8 *>(text.data()),
                                static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, nullptr);
}

CFDictionaryRef proxies_with(const SettingValue &value)
{
    stand_ins.proxies = std::map<std::string, SettingValue>{{"HTTPPort", value}};
    return SCDynamicStoreCopyProxies(nullptr);
}

static_assert(sizeof(SInt32) == 4 && sizeof(OSStatus) == 4 && sizeof(OSErr) == 2);
static_assert(sizeof(CFIndex) == sizeof(void *) && sizeof(FSRef) == 80);

TEST_F(StandIns, ListWhatIsLeftOver)
{
    const CFStringRef string = string_of("a text");
    const CFURLRef url = url_of("http://a/");
    const Texts both = {"string a text", "url http://a/"};
    EXPECT_EQ(left_over_objects(), both);
    CFRelease(string);
    EXPECT_EQ(left_over_objects(), Texts{"url http://a/"});
    CFRelease(url);
    EXPECT_EQ(left_over_objects(), Texts{});
}

TEST_F(StandIns, CountRetainedReferences)
{
    const CFStringRef string = string_of("a");
    EXPECT_EQ(CFRetain(string), string);
    CFRelease(string);
    EXPECT_EQ(left_over_objects(), Texts{"string a"});
    CFRelease(string);
    EXPECT_EQ(left_over_objects(), Texts{});
}

/// The texts of the failures that \p action adds, which do not count for the test.
template <typename Action> std::string failures_of(Action action)
{
    testing::TestPartResultArray results;
    {
        const testing::ScopedFakeTestPartResultReporter reporter(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
        action();
    }
    std::string texts;
    for (int i = 0; i < results.size(); ++i) {
        texts += results.GetTestPartResult(i).message();
    }
    return texts;
}

bool contains(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

TEST_F(StandIns, FailATestThatReleasesTwice)
{
    const CFStringRef string = string_of("a");
    CFRelease(string);
    EXPECT_TRUE(contains(failures_of([&] { CFRelease(string); }), "gone: string a"));
}

TEST_F(StandIns, FailATestThatUsesWhatIsGone)
{
    char buffer[8];
    const CFStringRef string = string_of("a");
    CFRelease(string);
    EXPECT_TRUE(
        contains(failures_of([&] { CFStringGetCString(string, buffer, 8, kCFStringEncodingUTF8); }),
                 "gone: string a"));
}

TEST_F(StandIns, FailATestThatReleasesABundleOfTheFrameworks)
{
    set_main_bundle({"/T", "", "", "", "", {}});
    const CFBundleRef bundle = CFBundleGetMainBundle();
    EXPECT_TRUE(contains(failures_of([&] { CFRelease(bundle); }), "without a reference"));
    EXPECT_EQ(failures_of([&] { CFRelease(CFBundleCopyBundleURL(bundle)); }), "");
}

TEST_F(StandIns, FailATestThatUsesAnUnloadedBundle)
{
    load_bundle("b", {"/B", "", "", "", "", {}});
    const CFBundleRef bundle = CFBundleGetBundleWithIdentifier(CFSTR("b"));
    unload_bundle("b");
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("b")), nullptr);
    EXPECT_TRUE(contains(failures_of([&] { CFRelease(CFBundleCopyBundleURL(bundle)); }), "gone"));
}

TEST_F(StandIns, FailATestThatReleasesAValueOfADictionary)
{
    const CFDictionaryRef dictionary = proxies_with(text_value("v"));
    const void *const value = CFDictionaryGetValue(dictionary, kSCPropNetProxiesHTTPPort);
    CFRelease(value);
    EXPECT_TRUE(contains(failures_of([&] { CFRelease(dictionary); }), "gone: string v"));
}

TEST_F(StandIns, LetTheValuesOfADictionaryGoWithIt)
{
    const CFDictionaryRef dictionary = proxies_with(text_value("v"));
    const void *const value = CFDictionaryGetValue(dictionary, kSCPropNetProxiesHTTPPort);
    CFRelease(dictionary);
    EXPECT_TRUE(contains(failures_of([&] { CFGetTypeID(value); }), "gone: string v"));
}

TEST_F(StandIns, FailATestThatMistakesTheKindOfAnObject)
{
    const CFDictionaryRef dictionary = proxies_with(truth_value(true));
    const void *const value = CFDictionaryGetValue(dictionary, kSCPropNetProxiesHTTPPort);
    EXPECT_EQ(CFGetTypeID(value), CFBooleanGetTypeID());
    EXPECT_NE(CFGetTypeID(value), CFNumberGetTypeID());
    int number = 0;
    EXPECT_TRUE(contains(failures_of([&] {
                             CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberIntType,
                                              &number);
                         }),
                         "another kind"));
    CFRelease(dictionary);
}

TEST_F(StandIns, EndTheProcessForNullInsteadOfAnObject)
{
    for (void (*const action)() :
         {+[] { CFRelease(nullptr); }, +[] { CFGetTypeID(nullptr); }, +[] { CFRetain(nullptr); },
          +[] { CFBundleCopyBundleURL(nullptr); }, +[] { CFBundleCopyExecutableURL(nullptr); },
          +[] { CFBundleCopySupportFilesDirectoryURL(nullptr); },
          +[] { CFBundleCopyResourcesDirectoryURL(nullptr); },
          +[] { CFBundleCopyBuiltInPlugInsURL(nullptr); },
          +[] { CFBundleCopyResourceURL(nullptr, CFSTR("a"), nullptr, nullptr); },
          +[] { CFBundleGetBundleWithIdentifier(nullptr); },
          +[] { CFURLCopyFileSystemPath(nullptr, kCFURLPOSIXPathStyle); },
          +[] { CFDictionaryGetValue(nullptr, CFSTR("a")); },
          +[] { CFDictionaryGetValue(proxies_with(text_value("")), nullptr); },
          +[] {
              int n;
              CFNumberGetValue(nullptr, kCFNumberIntType, &n);
          },
          +[] {
              char c;
              CFStringGetCString(nullptr, &c, 1, kCFStringEncodingASCII);
          },
          +[] { LSOpenCFURLRef(nullptr, nullptr); }}) {
        EXPECT_EQ(run_in_child(action).signal, SIGABRT);
    }
}

TEST_F(StandIns, EndTheProcessForANullPlace)
{
    for (void (*const action)() :
         {+[] { string_of(nullptr); },
          +[] { CFStringGetCString(string_of("a"), nullptr, 2, kCFStringEncodingASCII); },
          +[] { CFURLCreateWithBytes(nullptr, nullptr, 1, kCFStringEncodingASCII, nullptr); },
          +[] {
              CFURLCreateWithBytes(nullptr, reinterpret_cast<const UInt8 *>("a"), -1,
                                   kCFStringEncodingASCII, nullptr);
          },
          +[] {
              CFNumberGetValue(static_cast<CFNumberRef>(CFDictionaryGetValue(
                                   proxies_with(integer_value(1)), kSCPropNetProxiesHTTPPort)),
                               kCFNumberIntType, nullptr);
          },
          +[] { Gestalt(gestaltSystemVersion, nullptr); }}) {
        EXPECT_EQ(run_in_child(action).signal, SIGABRT);
    }
}

TEST_F(StandIns, FailATestThatNamesNoResource)
{
    set_main_bundle({"/T", "", "", "", "", {{"null", "/T/null"}}});
    const CFBundleRef bundle = CFBundleGetMainBundle();
    EXPECT_TRUE(contains(failures_of([&] {
                             EXPECT_EQ(CFBundleCopyResourceURL(bundle, nullptr, nullptr, nullptr),
                                       nullptr);
                         }),
                         "null instead of a name"));
}

TEST_F(StandIns, FailATestThatNamesAnUnknownEncoding)
{
    constexpr CFStringEncoding unknown = 0xffffffff;
    const CFStringRef string = string_of("a");
    char buffer[2] = "#";
    for (const std::string &failures :
         {failures_of([] { EXPECT_EQ(CFStringCreateWithCString(nullptr, "a", unknown), nullptr); }),
          failures_of([&] { EXPECT_EQ(CFStringGetCString(string, buffer, 2, unknown), 0); }),
          failures_of([] {
              EXPECT_EQ(CFURLCreateWithBytes(nullptr, reinterpret_cast<const UInt8 *>("a"), 1,
                                             unknown, nullptr),
                        nullptr);
          })}) {
        EXPECT_TRUE(contains(failures, "do not know"));
    }
    CFRelease(string);
}

TEST_F(StandIns, RefuseNullFileReferences)
{
    FSRef ref = {};
    stand_ins.files = {"/a"};
    EXPECT_EQ(FSPathMakeRef(nullptr, &ref, nullptr), paramErr);
    EXPECT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8 *>("/a"), nullptr, nullptr), paramErr);
    EXPECT_EQ(LSOpenFSRef(nullptr, nullptr), paramErr);
    EXPECT_TRUE(stand_ins.opened.empty());
}

TEST_F(StandIns, MakeNoStringOfIllFormedUtf8)
{
    for (const char *const text : {"\xc0\x80", "\xe0\x80\x80", "\xed\xa0\x80", "\xf0\x80\x80\x80",
                                   "\xf4\x90\x80\x80", "\xf5\x80\x80\x80", "\xc3", "\x80"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(string_of(text), nullptr);
    }
    for (const char *const text : {"\xe0\xa0\x80", "\xed\x9f\xbf", "\xf4\x8f\xbf\xbf"}) {
        SCOPED_TRACE(text);
        CFRelease(string_of(text));
    }
}

TEST_F(StandIns, LeaveConstantStringsUncounted)
{
    CFRelease(CFSTR("constant"));
    CFRelease(CFSTR("constant"));
    EXPECT_EQ(left_over_objects(), Texts{});
}

TEST_F(StandIns, MakeUrlsOfValidBytesOnly)
{
    for (const char *const text :
         {"", " ", "a b", "\"", "<", "a\x01", "%", "%4", "%g0", "\xc3\xa9"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(url_of(text), nullptr);
    }
    for (const char *const text :
         {"http://a:80/b;c?d=e&f#g", "relative/path", "%41%c3%a9", "a+b"}) {
        SCOPED_TRACE(text);
        const CFURLRef url = url_of(text);
        ASSERT_NE(url, nullptr);
        CFRelease(url);
    }
}

TEST_F(StandIns, MakeNoStringOfBytesThatTheEncodingLacks)
{
    EXPECT_EQ(string_of("\xe9"), nullptr);
    EXPECT_EQ(CFStringCreateWithCString(nullptr, "\xe9", kCFStringEncodingASCII), nullptr);
    const CFStringRef latin =
        CFStringCreateWithCString(nullptr, "\xe9", kCFStringEncodingISOLatin1);
    EXPECT_EQ(left_over_objects(), Texts{"string \xc3\xa9"});
    CFRelease(latin);
}

TEST_F(StandIns, RefuseACopyThatDoesNotFit)
{
    const CFStringRef string = string_of("abc");
    char buffer[5] = "####";
    EXPECT_EQ(CFStringGetCString(string, buffer, 3, kCFStringEncodingASCII), 0);
    EXPECT_EQ(std::string(buffer, 4), "abc#");
    EXPECT_EQ(CFStringGetCString(string, buffer, 4, kCFStringEncodingASCII), 1);
    EXPECT_STREQ(buffer, "abc");
    CFRelease(string);
}

TEST_F(StandIns, StoreTheNearestNumberWhenSomethingIsLost)
{
    struct Case {
        SettingValue value;
        Boolean whole;
        int stored;
    };
    for (const Case &c : {Case{integer_value(80), 1, 80}, Case{real_value(80), 1, 80},
                          Case{real_value(80.5), 0, 80}, Case{real_value(1e30), 0, INT_MAX},
                          Case{integer_value(-(std::int64_t{1} << 40)), 0, INT_MIN},
                          Case{integer_value(INT_MAX), 1, INT_MAX}}) {
        const CFDictionaryRef dictionary = proxies_with(c.value);
        const void *const value = CFDictionaryGetValue(dictionary, kSCPropNetProxiesHTTPPort);
        int number = 7;
        EXPECT_EQ(CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberIntType, &number),
                  c.whole);
        EXPECT_EQ(number, c.stored);
        CFRelease(dictionary);
    }
}

} // namespace
