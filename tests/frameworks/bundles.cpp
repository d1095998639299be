// Bundles: the running program's own, and those that are loaded.
#include "tests/frameworks/objects.h"

namespace {

CFBundleRef main_bundle = nullptr;
std::map<std::string, CFBundleRef> loaded_bundles;

/// A bundle that the frameworks hold.
CFBundleRef new_bundle(const std::string &identifier, const BundleParts &parts)
{
    Object &bundle = new_object(ObjectKind::Bundle);
    bundle.framework_references = 1;
    bundle.text = identifier;
    bundle.parts = parts;
    return reinterpret_cast<CFBundleRef>(&bundle);
}

/// A URL that belongs to the caller.
CFURLRef new_file_url(const std::string &path)
{
    Object &url = new_object(ObjectKind::Url);
    url.text = "file://" + path;
    url.path = path;
    return reinterpret_cast<CFURLRef>(&url);
}

/// A URL that belongs to the caller, for a part of a bundle.
CFURLRef url_of_part(CFBundleRef bundle, std::string BundleParts::*part, const char *call)
{
    const Object &object = object_of(bundle, ObjectKind::Bundle, call);
    const std::string &path = object.parts.*part;
    return begin_call(call, {object.text}) && !path.empty() ? new_file_url(path) : nullptr;
}

/// The same for a directory in the bundle. The real URL has the bundle's as its base, so that its
/// path begins there.
CFURLRef url_of_directory(CFBundleRef bundle, std::string BundleParts::*part, const char *call)
{
    const CFURLRef url = url_of_part(bundle, part, call);
    const std::string base = object_of(bundle, ObjectKind::Bundle, call).parts.bundle + "/";
    if (url != nullptr) {
        std::string &path = object_of(url, call).path;
        path.erase(0, path.compare(0, base.size(), base) == 0 ? base.size() : 0);
    }
    return url;
}

/// Fails the test unless \p string is null or a string.
void expect_string_or_null(CFStringRef string, const char *call)
{
    if (string != nullptr) {
        object_of(string, ObjectKind::String, call);
    }
}

} // namespace

void forget_bundles();

void forget_bundles()
{
    main_bundle = nullptr;
    loaded_bundles.clear();
}

void set_main_bundle(const BundleParts &parts)
{
    main_bundle = new_bundle("main", parts);
}

void load_bundle(const std::string &identifier, const BundleParts &parts)
{
    loaded_bundles[identifier] = new_bundle(identifier, parts);
}

void unload_bundle(const std::string &identifier)
{
    Object &bundle = object_of(loaded_bundles.at(identifier), "unload_bundle");
    bundle.framework_references = 0;
    release(bundle);
    loaded_bundles.erase(identifier);
}

CFBundleRef CFBundleGetMainBundle(void)
{
    return begin_call("CFBundleGetMainBundle") ? main_bundle : nullptr;
}

CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier)
{
    const std::string &text =
        object_of(identifier, ObjectKind::String, "CFBundleGetBundleWithIdentifier").text;
    const bool works = begin_call("CFBundleGetBundleWithIdentifier", {text});
    const auto place = loaded_bundles.find(text);
    return works && place != loaded_bundles.end() ? place->second : nullptr;
}

CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle)
{
    return url_of_part(bundle, &BundleParts::bundle, "CFBundleCopyBundleURL");
}

CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle)
{
    return url_of_part(bundle, &BundleParts::executable, "CFBundleCopyExecutableURL");
}

CFURLRef CFBundleCopySupportFilesDirectoryURL(CFBundleRef bundle)
{
    return url_of_directory(bundle, &BundleParts::support_files,
                            "CFBundleCopySupportFilesDirectoryURL");
}

CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle)
{
    return url_of_directory(bundle, &BundleParts::resources, "CFBundleCopyResourcesDirectoryURL");
}

CFURLRef CFBundleCopyBuiltInPlugInsURL(CFBundleRef bundle)
{
    return url_of_directory(bundle, &BundleParts::plug_ins, "CFBundleCopyBuiltInPlugInsURL");
}

CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                 CFStringRef subdirectory)
{
    const Object &object = object_of(bundle, ObjectKind::Bundle, "CFBundleCopyResourceURL");
    for (const CFStringRef string : {name, type, subdirectory}) {
        expect_string_or_null(string, "CFBundleCopyResourceURL");
    }
    if (name == nullptr) {
        ADD_FAILURE() << "CFBundleCopyResourceURL: null instead of a name";
    }
    const bool works =
        begin_call("CFBundleCopyResourceURL",
                   {object.text, described(name), described(type), described(subdirectory)});
    const auto place = object.parts.resource_paths.find(described(name));
    if (!works || name == nullptr || place == object.parts.resource_paths.end()) {
        return nullptr;
    }
    return new_file_url(place->second);
}
