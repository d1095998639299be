#include <CoreFoundation/CoreFoundation.h>
#include <cstring>

#include "platform/platform.h"

namespace {

// The platform's status for an invalid URL.
constexpr int no_url_status = -30773;

} // namespace

int open_url(const char *bytes, long length)
{
    if (length < 0) {
        return no_url_status;
    }
    const CFURLRef url =
        CFURLCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8 *>(bytes), length,
                             CFStringGetSystemEncoding(), nullptr);
    if (url == nullptr) {
        return no_url_status;
    }
    const OSStatus status = LSOpenCFURLRef(url, nullptr);
    CFRelease(url);
    return static_cast<int>(status);
}

int open_file(const char *path)
{
    FSRef ref = {}; // what a failed conversion leaves for the open call to refuse
    FSPathMakeRef(reinterpret_cast<const UInt8 *>(path), &ref, nullptr);
    return open_fsref(ref);
}

int open_fsref(FSRef ref)
{
    return static_cast<int>(LSOpenFSRef(&ref, nullptr));
}

int open_document(const char *target)
{
    const int status = target[0] == '/' ? open_file(target)
                                        : open_url(target, static_cast<long>(std::strlen(target)));
    return status == 0 ? 0 : -1;
}
