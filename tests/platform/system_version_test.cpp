#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/c-utils.h"
#include "tests/frameworks/stand_ins.h"
#include "tests/platform/guarded_buffer.h"

namespace {

class SystemVersion : public FrameworksTest {
protected:
    /// What the version reads as in a buffer of \p size bytes; also checks the rest of the words on
    /// the buffer.
    static std::string version_text(std::size_t size = 32)
    {
        GuardedBuffer buffer(size);
        EXPECT_EQ(get_os_version(buffer.data(), size), buffer.data());
        EXPECT_TRUE(buffer.is_guard_intact());
        EXPECT_EQ(buffer.data()[size - 1], '\0');
        return buffer.text();
    }
};

TEST_F(SystemVersion, AsksOnceForTheSystemVersion)
{
    version_text();
    const std::vector<std::vector<std::string>> asked = {{std::to_string(0x73797376)}};
    EXPECT_EQ(stand_ins.calls_of("Gestalt"), asked);
}

TEST_F(SystemVersion, PrintsFourHexadecimalDigitsTheFirstTwoSideBySide)
{
    struct Case {
        SInt32 response;
        const char *text;
    };
    for (const Case &c : {Case{0x1049, "10.4.9"}, Case{0x1058, "10.5.8"}, Case{0x104B, "10.4.11"},
                          Case{0x1068, "10.6.8"}, Case{0x109F, "10.9.15"}, Case{0x0922, "09.2.2"},
                          Case{0x0000, "00.0.0"}, Case{0x1000, "10.0.0"}, Case{0x10A0, "10.10.0"},
                          Case{0x1A00, "110.0.0"}, Case{0xFFFF, "1515.15.15"}}) {
        SCOPED_TRACE(c.text);
        stand_ins.gestalt_response = c.response;
        EXPECT_EQ(version_text(), c.text);
    }
}

TEST_F(SystemVersion, LooksAtTheLowSixteenBitsOnly)
{
    stand_ins.gestalt_response = 0x7FFF1049;
    EXPECT_EQ(version_text(), "10.4.9");
    stand_ins.gestalt_response = -0x10000 + 0x1058;
    EXPECT_EQ(version_text(), "10.5.8");
}

TEST_F(SystemVersion, IsUnknownAfterAnyError)
{
    stand_ins.gestalt_response = 0x1049;
    for (const OSErr error : {OSErr{-5551}, OSErr{-1}, OSErr{1}, OSErr{256}, OSErr{-32768}}) {
        stand_ins.gestalt_error = error;
        EXPECT_EQ(version_text(), "unknown");
    }
}

TEST_F(SystemVersion, IsCutToTheBuffer)
{
    stand_ins.gestalt_response = 0x104B;
    EXPECT_EQ(version_text(sizeof "10.4.11"), "10.4.11");
    EXPECT_EQ(version_text(sizeof "10.4.11" - 1), "10.4.1");
    EXPECT_EQ(version_text(4), "10.");
    EXPECT_EQ(version_text(1), "");
    stand_ins.gestalt_error = -5551;
    EXPECT_EQ(version_text(sizeof "unknown"), "unknown");
    EXPECT_EQ(version_text(4), "unk");
    EXPECT_EQ(version_text(1), "");
}

TEST_F(SystemVersion, WritesNothingIntoABufferOfNoBytes)
{
    GuardedBuffer none(0);
    stand_ins.gestalt_response = 0x1049;
    EXPECT_EQ(get_os_version(none.data(), 0), none.data());
    stand_ins.gestalt_error = -5551;
    EXPECT_EQ(get_os_version(none.data(), 0), none.data());
    EXPECT_TRUE(none.is_untouched());
}

} // namespace
