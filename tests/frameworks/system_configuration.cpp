// The proxy settings.
#include "tests/frameworks/objects.h"

const CFStringRef kSCPropNetProxiesHTTPEnable = CFSTR("HTTPEnable");
const CFStringRef kSCPropNetProxiesHTTPProxy = CFSTR("HTTPProxy");
const CFStringRef kSCPropNetProxiesHTTPPort = CFSTR("HTTPPort");

namespace {

CFTypeRef new_value(const SettingValue &value)
{
    Object &object = new_object(value.kind == SettingValue::Text    ? ObjectKind::String
                                : value.kind == SettingValue::Truth ? ObjectKind::Truth
                                                                    : ObjectKind::Number);
    object.text = value.text;
    object.number = value;
    return &object;
}

} // namespace

SettingValue text_value(const std::string &utf8)
{
    return {SettingValue::Text, utf8};
}

SettingValue integer_value(std::int64_t value)
{
    return {SettingValue::Integer, {}, value};
}

SettingValue real_value(double value)
{
    return {SettingValue::Real, {}, 0, value};
}

SettingValue truth_value(bool value)
{
    return {SettingValue::Truth, {}, value ? 1 : 0};
}

CFDictionaryRef SCDynamicStoreCopyProxies(SCDynamicStoreRef store)
{
    const bool works =
        begin_call("SCDynamicStoreCopyProxies", {store == nullptr ? "null" : "given"});
    if (!works || !stand_ins.proxies) {
        return nullptr;
    }
    Object &dictionary = new_object(ObjectKind::Dictionary);
    for (const auto &[key, value] : *stand_ins.proxies) {
        dictionary.values[key] = new_value(value);
    }
    return reinterpret_cast<CFDictionaryRef>(&dictionary);
}
