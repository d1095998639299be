/// \file
/// Stand-in for the header of the same name on Mac OS X: the types, constants and calls that this
/// system uses, with their public signatures. What they do is scripted in stand_ins.h.
#pragma once

typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef signed short SInt16;
#if defined(__LP64__)
typedef unsigned int UInt32;
typedef signed int SInt32;
#else
typedef unsigned long UInt32;
typedef signed long SInt32;
#endif
typedef SInt16 OSErr;
typedef SInt32 OSStatus;
typedef UInt32 FourCharCode;
typedef FourCharCode OSType;

typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef signed long CFIndex;
typedef UInt32 CFStringEncoding;

typedef const void *CFTypeRef;
typedef const struct StandInAllocator *CFAllocatorRef;
typedef const struct StandInString *CFStringRef;
typedef const struct StandInUrl *CFURLRef;
typedef const struct StandInDictionary *CFDictionaryRef;
typedef const struct StandInNumber *CFNumberRef;
typedef const struct StandInBoolean *CFBooleanRef;
typedef struct StandInBundle *CFBundleRef;

enum : CFStringEncoding {
    kCFStringEncodingMacRoman = 0,
    kCFStringEncodingISOLatin1 = 0x0201,
    kCFStringEncodingASCII = 0x0600,
    kCFStringEncodingUTF8 = 0x08000100,
};

enum CFNumberType : CFIndex {
    kCFNumberSInt8Type = 1,
    kCFNumberSInt16Type = 2,
    kCFNumberSInt32Type = 3,
    kCFNumberSInt64Type = 4,
    kCFNumberFloat32Type = 5,
    kCFNumberFloat64Type = 6,
    kCFNumberCharType = 7,
    kCFNumberShortType = 8,
    kCFNumberIntType = 9,
    kCFNumberLongType = 10,
};

enum CFURLPathStyle : CFIndex {
    kCFURLPOSIXPathStyle = 0,
    kCFURLHFSPathStyle = 1,
    kCFURLWindowsPathStyle = 2,
};

extern "C" {

extern const CFAllocatorRef kCFAllocatorDefault;

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);

CFStringRef StandInConstantString(const char *text);
CFTypeID CFStringGetTypeID(void);
CFStringEncoding CFStringGetSystemEncoding(void);
CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char *text,
                                      CFStringEncoding encoding);
Boolean CFStringGetCString(CFStringRef string, char *buffer, CFIndex size,
                           CFStringEncoding encoding);

CFURLRef CFURLCreateWithBytes(CFAllocatorRef allocator, const UInt8 *bytes, CFIndex length,
                              CFStringEncoding encoding, CFURLRef base);
CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style);

CFBundleRef CFBundleGetMainBundle(void);
CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier);
CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle);
CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle);
CFURLRef CFBundleCopySupportFilesDirectoryURL(CFBundleRef bundle);
CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle);
CFURLRef CFBundleCopyBuiltInPlugInsURL(CFBundleRef bundle);
CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                 CFStringRef subdirectory);

const void *CFDictionaryGetValue(CFDictionaryRef dictionary, const void *key);

CFTypeID CFBooleanGetTypeID(void);
CFTypeID CFNumberGetTypeID(void);
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void *value);

} // extern "C"

#define CFSTR(text) StandInConstantString("" text "")
