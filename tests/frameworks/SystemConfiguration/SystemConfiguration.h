/// \file
/// Stand-in for the header of the same name on Mac OS X: the settings of the HTTP proxy. What the
/// call returns is scripted in stand_ins.h.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

typedef const struct StandInStore *SCDynamicStoreRef;

extern "C" {

extern const CFStringRef kSCPropNetProxiesHTTPEnable;
extern const CFStringRef kSCPropNetProxiesHTTPProxy;
extern const CFStringRef kSCPropNetProxiesHTTPPort;

CFDictionaryRef SCDynamicStoreCopyProxies(SCDynamicStoreRef store);

} // extern "C"
