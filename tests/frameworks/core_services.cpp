// Launch Services, file references and Gestalt.
#include <cstdio>

#include "tests/frameworks/objects.h"

namespace {

constexpr char mark[] = "reference to ";

std::string given_or_null(const void *pointer)
{
    return pointer == nullptr ? "null" : "given";
}

/// "file PATH" for a reference that FSPathMakeRef() made.
std::string described(const FSRef &ref)
{
    const std::string text(reinterpret_cast<const char *>(ref.hidden), sizeof ref.hidden);
    if (text.compare(0, sizeof mark - 1, mark) != 0) {
        return "unknown file";
    }
    return "file " + std::string(text.c_str() + sizeof mark - 1);
}

} // namespace

OSErr Gestalt(OSType selector, SInt32 *response)
{
    begin_call("Gestalt", {std::to_string(selector)});
    if (response == nullptr) {
        crash("Gestalt", "null instead of a place for the response");
    }
    if (stand_ins.gestalt_error == noErr) {
        *response = stand_ins.gestalt_response;
    }
    return stand_ins.gestalt_error;
}

OSStatus FSPathMakeRef(const UInt8 *path, FSRef *ref, Boolean *)
{
    if (path == nullptr || ref == nullptr) {
        return paramErr;
    }
    const std::string text(reinterpret_cast<const char *>(path));
    if (!begin_call("FSPathMakeRef", {text}) || stand_ins.files.count(text) == 0) {
        return fnfErr;
    }
    *ref = {};
    std::snprintf(reinterpret_cast<char *>(ref->hidden), sizeof ref->hidden, "%s%s", mark,
                  text.c_str());
    return noErr;
}

OSStatus LSOpenFSRef(const FSRef *ref, FSRef *launched)
{
    begin_call("LSOpenFSRef", {given_or_null(launched)});
    if (ref == nullptr) {
        return paramErr;
    }
    stand_ins.opened.push_back(described(*ref));
    stand_ins.opened_ref.assign(reinterpret_cast<const char *>(ref->hidden), sizeof ref->hidden);
    return stand_ins.open_status;
}

OSStatus LSOpenCFURLRef(CFURLRef url, CFURLRef *launched)
{
    const Object &object = object_of(url, ObjectKind::Url, "LSOpenCFURLRef");
    begin_call("LSOpenCFURLRef", {given_or_null(launched)});
    stand_ins.opened.push_back("url " + object.text);
    return stand_ins.open_status;
}
