#include <CoreFoundation/CoreFoundation.h>

#include "platform/platform.h"

namespace {

constexpr int resource_kind = 5;

using url_copier = CFURLRef (*)(CFBundleRef);

// Indexed by kind, up to the resource's.
constexpr url_copier url_copiers[resource_kind] = {
    CFBundleCopyBundleURL,
    CFBundleCopyExecutableURL,
    CFBundleCopySupportFilesDirectoryURL,
    CFBundleCopyResourcesDirectoryURL,
    CFBundleCopyBuiltInPlugInsURL,
};

/// \return null when the name has bytes that the system's encoding does not know.
CFStringRef make_string(const char *text)
{
    return CFStringCreateWithCString(kCFAllocatorDefault, text, CFStringGetSystemEncoding());
}

CFURLRef copy_resource_url(CFBundleRef bundle, CFStringRef name)
{
    return name != nullptr ? CFBundleCopyResourceURL(bundle, name, nullptr, nullptr) : nullptr;
}

CFURLRef copy_url_of_kind(CFBundleRef bundle, int kind, const char *name)
{
    if (kind == resource_kind) {
        // Deliberate: this string is not released.
        return copy_resource_url(bundle, make_string(name));
    }
    return url_copiers[kind > 0 && kind < resource_kind ? kind : 0](bundle);
}

/// Writes the path of \p url, which is released, into \p buffer; "" when it does not fit.
/// \return whether there is a path.
bool take_url_path(CFURLRef url, char *buffer, int size)
{
    if (url == nullptr) {
        return false;
    }
    const CFStringRef path = CFURLCopyFileSystemPath(url, kCFURLPOSIXPathStyle);
    CFRelease(url);
    if (path == nullptr) {
        return false;
    }
    if (!CFStringGetCString(path, buffer, size, CFStringGetSystemEncoding()) && size > 0) {
        buffer[0] = '\0';
    }
    CFRelease(path);
    return true;
}

/// \return the host plug-in bundle, which is not ours to release; null when it is not loaded.
CFBundleRef host_bundle()
{
    return CFBundleGetBundleWithIdentifier(CFSTR("com.morvane.CorvellaHostPlugin"));
}

} // namespace

char *main_bundle_path(char *buffer, int size, int kind, const char *name)
{
    const CFBundleRef bundle = CFBundleGetMainBundle();
    if (bundle == nullptr) {
        return nullptr;
    }
    return take_url_path(copy_url_of_kind(bundle, kind, name), buffer, size) ? buffer : nullptr;
}

char *host_bundle_path(char *buffer, int size)
{
    const CFBundleRef bundle = host_bundle();
    if (bundle == nullptr) {
        return nullptr;
    }
    return take_url_path(CFBundleCopyBundleURL(bundle), buffer, size) ? buffer : nullptr;
}

int host_bundle_resource_path(const char *name, char *buffer, int size)
{
    const CFBundleRef bundle = host_bundle();
    if (bundle == nullptr) {
        return 0;
    }
    const CFStringRef name_string = make_string(name);
    take_url_path(copy_resource_url(bundle, name_string), buffer, size);
    if (name_string != nullptr) {
        CFRelease(name_string);
    }
    return 0;
}
