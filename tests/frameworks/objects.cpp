#include "tests/frameworks/objects.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <deque>

FrameworkStandIns stand_ins;

namespace {

std::deque<Object> &counted_objects()
{
    static std::deque<Object> objects;
    return objects;
}

std::map<std::string, Object> &constant_strings()
{
    static std::map<std::string, Object> strings;
    return strings;
}

Object *find_object(CFTypeRef reference)
{
    for (Object &object : counted_objects()) {
        if (&object == reference) {
            return &object;
        }
    }
    for (auto &[text, object] : constant_strings()) {
        if (&object == reference) {
            return &object;
        }
    }
    return nullptr;
}

} // namespace

void crash(const char *call, const char *reason)
{
    std::fprintf(stderr, "%s: %s\n", call, reason);
    std::abort();
}

Object &new_object(ObjectKind kind)
{
    counted_objects().push_back(Object{kind, false});
    return counted_objects().back();
}

CFStringRef new_string(const std::string &utf8)
{
    Object &string = new_object(ObjectKind::String);
    string.text = utf8;
    return reinterpret_cast<CFStringRef>(&string);
}

Object &object_of(CFTypeRef reference, const char *call)
{
    if (reference == nullptr) {
        crash(call, "null instead of an object");
    }
    Object *const object = find_object(reference);
    if (object == nullptr) {
        crash(call, "no object");
    }
    if (object->references <= 0) {
        ADD_FAILURE() << call << " uses an object that is gone: " << described(*object);
    }
    return *object;
}

Object &object_of(CFTypeRef reference, ObjectKind kind, const char *call)
{
    Object &object = object_of(reference, call);
    if (object.kind != kind) {
        ADD_FAILURE() << call << " uses an object of another kind: " << described(object);
    }
    return object;
}

// NOLINTNEXTLINE(misc-no-recursion): a container releases what it holds.
void release(Object &object)
{
    if (object.constant) {
        return;
    }
    if (object.references <= object.framework_references) {
        ADD_FAILURE() << "released without a reference to give back: " << described(object);
        return;
    }
    if (--object.references == 0) {
        for (const auto &[key, value] : object.values) {
            release(object_of(value, "release of a dictionary"));
        }
    }
}

std::string described(const Object &object)
{
    static constexpr std::array<const char *, 6> names = {"string", "url",     "dictionary",
                                                          "number", "boolean", "bundle"};
    return names[static_cast<std::size_t>(object.kind)] +
           (object.text.empty() ? "" : " " + object.text);
}

std::string described(CFTypeRef reference)
{
    return reference == nullptr ? "null" : object_of(reference, "a call's argument").text;
}

bool begin_call(const char *name, std::vector<std::string> arguments)
{
    stand_ins.calls.push_back({name, std::move(arguments)});
    return stand_ins.failing.count(name) == 0;
}

std::vector<std::vector<std::string>> FrameworkStandIns::calls_of(const std::string &name) const
{
    std::vector<std::vector<std::string>> found;
    for (const FrameworkCall &call : calls) {
        if (call.name == name) {
            found.push_back(call.arguments);
        }
    }
    return found;
}

std::vector<std::string> left_over_objects()
{
    std::vector<std::string> left_over;
    for (const Object &object : counted_objects()) {
        if (object.references > object.framework_references) {
            left_over.push_back(described(object));
        }
    }
    return left_over;
}

void forget_bundles();

void reset_stand_ins()
{
    forget_bundles();
    counted_objects().clear();
    stand_ins = {};
}

const CFAllocatorRef kCFAllocatorDefault = nullptr;

CFTypeRef CFRetain(CFTypeRef object)
{
    ++object_of(object, "CFRetain").references;
    return object;
}

void CFRelease(CFTypeRef object)
{
    release(object_of(object, "CFRelease"));
}

CFTypeID CFGetTypeID(CFTypeRef object)
{
    return static_cast<CFTypeID>(object_of(object, "CFGetTypeID").kind) + 1;
}

CFStringRef StandInConstantString(const char *text)
{
    const auto place = constant_strings().try_emplace(text, Object{ObjectKind::String, true}).first;
    place->second.text = text;
    return reinterpret_cast<CFStringRef>(&place->second);
}
