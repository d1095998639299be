// Strings, URLs, dictionaries and numbers.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>

#include "tests/frameworks/objects.h"
#include "tests/frameworks/text_encodings.h"

namespace {

std::string hexadecimal(CFStringEncoding encoding)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08lx", static_cast<unsigned long>(encoding));
    return text;
}

bool is_url_punctuation(char c)
{
    return c != '\0' && std::strchr(";/?:@&=+$,-_.!~*'()#[]", c) != nullptr;
}

bool is_hexadecimal_digit(char c)
{
    return c != '\0' && std::strchr("0123456789abcdefABCDEF", c) != nullptr;
}

bool is_letter_or_digit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Whether the text has only the characters of RFC 2396 and whole escapes.
bool is_valid_url(const std::string &text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%') {
            if (i + 2 >= text.size() || !is_hexadecimal_digit(text[i + 1]) ||
                !is_hexadecimal_digit(text[i + 2])) {
                return false;
            }
            i += 2;
        } else if (!is_letter_or_digit(text[i]) && !is_url_punctuation(text[i])) {
            return false;
        }
    }
    return !text.empty();
}

/// Stores \p number in the type of \p value. \return whether nothing of it was lost.
template <typename Target> Boolean store(const SettingValue &number, void *value)
{
    const double real =
        number.kind == SettingValue::Real ? number.real : static_cast<double>(number.integer);
    using Limits = std::numeric_limits<Target>;
    const Target stored = real >= static_cast<double>(Limits::max()) ? Limits::max()
                          : real <= static_cast<double>(Limits::lowest())
                              ? Limits::lowest()
                              : static_cast<Target>(real);
    std::memcpy(value, &stored, sizeof stored);
    return static_cast<double>(stored) == real ? 1 : 0;
}

} // namespace

CFTypeID CFStringGetTypeID(void)
{
    return static_cast<CFTypeID>(ObjectKind::String) + 1;
}

CFTypeID CFNumberGetTypeID(void)
{
    return static_cast<CFTypeID>(ObjectKind::Number) + 1;
}

CFTypeID CFBooleanGetTypeID(void)
{
    return static_cast<CFTypeID>(ObjectKind::Truth) + 1;
}

CFStringEncoding CFStringGetSystemEncoding(void)
{
    return stand_ins.system_encoding;
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char *text, CFStringEncoding encoding)
{
    if (text == nullptr) {
        crash("CFStringCreateWithCString", "null instead of a string");
    }
    const bool works = begin_call("CFStringCreateWithCString", {text, hexadecimal(encoding)});
    const std::optional<std::string> utf8 = decode(text, encoding);
    return works && utf8 ? new_string(*utf8) : nullptr;
}

Boolean CFStringGetCString(CFStringRef string, char *buffer, CFIndex size,
                           CFStringEncoding encoding)
{
    const std::string &utf8 = object_of(string, ObjectKind::String, "CFStringGetCString").text;
    const bool works =
        begin_call("CFStringGetCString", {utf8, std::to_string(size), hexadecimal(encoding)});
    if (buffer == nullptr && size > 0) {
        crash("CFStringGetCString", "null instead of a buffer");
    }
    bool whole = works;
    std::string bytes = encode(utf8, encoding, whole);
    if (size <= 0) {
        return 0;
    }
    // What fits is there even when the copy is refused, and then without an end.
    const auto room = static_cast<std::size_t>(size);
    if (!whole || bytes.size() >= room) {
        std::memcpy(buffer, bytes.data(), std::min(bytes.size(), room));
        return 0;
    }
    std::memcpy(buffer, bytes.c_str(), bytes.size() + 1);
    return 1;
}

CFURLRef CFURLCreateWithBytes(CFAllocatorRef, const UInt8 *bytes, CFIndex length,
                              CFStringEncoding encoding, CFURLRef base)
{
    if (length < 0 || (bytes == nullptr && length > 0)) {
        crash("CFURLCreateWithBytes", "no such bytes");
    }
    if (base != nullptr) {
        object_of(base, ObjectKind::Url, "CFURLCreateWithBytes");
    }
    const std::string text(reinterpret_cast<const char *>(bytes), static_cast<std::size_t>(length));
    const bool works =
        begin_call("CFURLCreateWithBytes", {text, hexadecimal(encoding), described(base)});
    if (!works || !decode(text, encoding) || !is_valid_url(text)) {
        return nullptr;
    }
    Object &url = new_object(ObjectKind::Url);
    url.text = text;
    return reinterpret_cast<CFURLRef>(&url);
}

CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style)
{
    const Object &object = object_of(url, ObjectKind::Url, "CFURLCopyFileSystemPath");
    const bool works = begin_call("CFURLCopyFileSystemPath",
                                  {object.text, std::to_string(static_cast<CFIndex>(style))});
    return works && !object.path.empty() ? new_string(object.path) : nullptr;
}

const void *CFDictionaryGetValue(CFDictionaryRef dictionary, const void *key)
{
    const Object &object = object_of(dictionary, ObjectKind::Dictionary, "CFDictionaryGetValue");
    const Object &name = object_of(key, ObjectKind::String, "CFDictionaryGetValue");
    begin_call("CFDictionaryGetValue", {name.text});
    const auto place = object.values.find(name.text);
    return place == object.values.end() ? nullptr : place->second;
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void *value)
{
    const Object &object = object_of(number, ObjectKind::Number, "CFNumberGetValue");
    if (value == nullptr) {
        crash("CFNumberGetValue", "null instead of a place for the number");
    }
    const bool works = begin_call("CFNumberGetValue", {std::to_string(static_cast<CFIndex>(type))});
    switch (type) {
    case kCFNumberSInt8Type:
    case kCFNumberCharType:
        return store<signed char>(object.number, value) && works;
    case kCFNumberSInt16Type:
    case kCFNumberShortType:
        return store<short>(object.number, value) && works;
    case kCFNumberSInt32Type:
    case kCFNumberIntType:
        return store<int>(object.number, value) && works;
    case kCFNumberLongType:
        return store<long>(object.number, value) && works;
    case kCFNumberSInt64Type:
        return store<std::int64_t>(object.number, value) && works;
    case kCFNumberFloat32Type:
        return store<float>(object.number, value) && works;
    case kCFNumberFloat64Type:
        return store<double>(object.number, value) && works;
    }
    ADD_FAILURE() << "CFNumberGetValue: no such type of number";
    return 0;
}
