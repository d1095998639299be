/// \file
/// What the tests of the message facility share.
#pragma once

#include <gtest/gtest.h>
#include <string>

#include "support/error.h"

/// Starts and leaves every test with the default hooks, no indent and messages on standard error.
class FacilityTest : public testing::Test {
protected:
    FacilityTest()
    {
        restore_defaults();
    }
    ~FacilityTest() override
    {
        restore_defaults();
    }

public:
    FacilityTest(const FacilityTest &) = delete;
    FacilityTest &operator=(const FacilityTest &) = delete;

private:
    static void restore_defaults()
    {
        set_output_hook(nullptr);
        set_message_hook(nullptr);
        set_print_stream(nullptr);
        set_print_indent(0);
    }
};

/// \return \p count times \p character.
inline std::string many(std::size_t count, char character = 'a')
{
    std::string text;
    text.resize(count, character);
    return text;
}

/// \return a text of \p count characters in which every place can be told from its neighbours, so
/// that a cut at the wrong end or a lost piece shows.
inline std::string counting_text(std::size_t count)
{
    std::string text;
    while (text.size() < count) {
        text += std::to_string(text.size());
        text += ' ';
    }
    text.resize(count);
    return text;
}
