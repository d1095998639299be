/// \file
/// The objects behind the stand-ins: kinds, contents and reference counts. Only the stand-ins
/// include this.
#pragma once

#include "tests/frameworks/stand_ins.h"

enum class ObjectKind { String, Url, Dictionary, Number, Truth, Bundle };

struct Object {
    ObjectKind kind;
    bool constant; ///< neither counted nor ever gone
    int references = 1;
    int framework_references = 0; ///< those that no caller gives back

    std::string text{}; ///< of a string, in UTF-8, or of a URL
    std::string path{}; ///< of a file's URL, in UTF-8
    SettingValue number{SettingValue::Integer};
    BundleParts parts{};
    std::map<std::string, CFTypeRef> values{}; ///< of a dictionary, each held by it
};

/// \return a new object, whose one reference is the caller's.
Object &new_object(ObjectKind kind);
CFStringRef new_string(const std::string &utf8);

/// Ends the process, as the real call crashes there.
[[noreturn]] void crash(const char *call, const char *reason);

/// The object of a reference, which fails the test when there is none or it is gone. Ends the
/// process for null.
/// \param call the name of the call that asks
Object &object_of(CFTypeRef reference, const char *call);

/// The same for an object that must be of \p kind.
Object &object_of(CFTypeRef reference, ObjectKind kind, const char *call);

/// Takes one reference away; a dictionary without references lets go of its values.
void release(Object &object);

std::string described(const Object &object);
/// "null" or the text of the string or URL.
std::string described(CFTypeRef reference);

/// Notes a call. \return false when it is to fail.
bool begin_call(const char *name, std::vector<std::string> arguments = {});
