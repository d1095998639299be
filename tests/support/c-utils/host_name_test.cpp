// The host name from this program's own gethostname(), which stands in for the system's.
#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

#include "support/c-utils.h"
#include "tests/harness/libc_noexcept.h"

namespace {

enum class Answer { name, nothing, cut_without_nul, cut_and_error };

Answer answer;
const char *asked_buffer;
std::size_t asked_size;
const std::string name = "a-host-name";

} // namespace

extern "C" int gethostname(char *buffer, std::size_t size) LIBC_NOEXCEPT
{
    asked_buffer = buffer;
    asked_size = size;
    if (answer == Answer::nothing) {
        errno = EFAULT;
        return -1;
    }
    if (answer == Answer::name && name.size() < size) {
        std::memcpy(buffer, name.c_str(), name.size() + 1);
        return 0;
    }
    const std::string cut = name.substr(0, size);
    std::memcpy(buffer, cut.data(), cut.size());
    if (answer == Answer::cut_and_error) {
        errno = ENAMETOOLONG;
        return -1;
    }
    return 0;
}

namespace {

constexpr std::size_t margin = 16;

/// Calls get_host_name() on the first \p size bytes of an area filled with '#'.
std::string area_after(Answer what, std::size_t size)
{
    answer = what;
    asked_buffer = nullptr;
    std::string area(size + margin, '#');
    get_host_name(area.data(), size);
    EXPECT_EQ(area.substr(size), std::string(margin, '#'));
    return area;
}

TEST(HostName, IsTheSystemsName)
{
    EXPECT_STREQ(area_after(Answer::name, 64).c_str(), "a-host-name");
    EXPECT_STREQ(area_after(Answer::name, 12).c_str(), "a-host-name");
}

TEST(HostName, IsAskedForOnceWithTheCallersBufferAndSize)
{
    answer = Answer::name;
    char buffer[64];
    get_host_name(buffer, sizeof buffer);
    EXPECT_EQ(asked_buffer, buffer);
    EXPECT_EQ(asked_size, sizeof buffer);
}

TEST(HostName, IsEmptyWhenTheSystemDoesNotTellIt)
{
    EXPECT_STREQ(area_after(Answer::nothing, 64).c_str(), "");
    EXPECT_STREQ(area_after(Answer::nothing, 1).c_str(), "");
}

TEST(HostName, EndsInNulAtTheLastByteWhateverHappened)
{
    for (const Answer what :
         {Answer::name, Answer::nothing, Answer::cut_without_nul, Answer::cut_and_error}) {
        for (const std::size_t size : {1U, 2U, 5U, 10U, 11U, 12U, 13U, 64U}) {
            EXPECT_EQ(area_after(what, size)[size - 1], '\0') << size;
        }
    }
}

TEST(HostName, IsCutToTheBufferAndTerminatedWithOrWithoutAnError)
{
    for (const Answer what : {Answer::cut_without_nul, Answer::cut_and_error}) {
        EXPECT_STREQ(area_after(what, 1).c_str(), "");
        EXPECT_STREQ(area_after(what, 2).c_str(), "a");
        EXPECT_STREQ(area_after(what, 5).c_str(), "a-ho");
        EXPECT_STREQ(area_after(what, 11).c_str(), "a-host-nam");
    }
}

TEST(HostName, LeavesABufferOfNoBytesAlone)
{
    for (const Answer what : {Answer::name, Answer::nothing}) {
        EXPECT_EQ(area_after(what, 0), std::string(margin, '#'));
    }
}

} // namespace
