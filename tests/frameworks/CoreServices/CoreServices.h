/// \file
/// Stand-in for the header of the same name on Mac OS X: Launch Services, file references and
/// Gestalt, as far as this system uses them. What they do is scripted in stand_ins.h.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

enum : int {
    noErr = 0,
    fnfErr = -43,
    paramErr = -50,
    gestaltUndefSelectorErr = -5551,
    kLSApplicationNotFoundErr = -10814,
};

enum : OSType {
    gestaltSystemVersion = 0x73797376, // 'sysv'
};

struct FSRef {
    UInt8 hidden[80];
};

extern "C" {

OSErr Gestalt(OSType selector, SInt32 *response);
OSStatus FSPathMakeRef(const UInt8 *path, FSRef *ref, Boolean *is_directory);
OSStatus LSOpenFSRef(const FSRef *ref, FSRef *launched);
OSStatus LSOpenCFURLRef(CFURLRef url, CFURLRef *launched);

} // extern "C"
