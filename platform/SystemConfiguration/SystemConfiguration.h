#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// Replacement, on other systems, for the parts of the macOS framework of this name that the proxy
/// lookup uses, with the framework's names and signatures.
namespace Ostrel {
inline namespace Platform {

// NOLINTBEGIN(readability-identifier-naming): the names are the framework's.

using SCDynamicStoreRef = struct SCDynamicStoreObject const*;

/// A snapshot of the scripted `SystemSettings`, which the caller owns and releases with
/// `CFRelease`; null if they cannot be read. The store is ignored.
CFDictionaryRef SCDynamicStoreCopyProxies(SCDynamicStoreRef store);

extern CFStringRef const kSCPropNetProxiesHTTPEnable;
extern CFStringRef const kSCPropNetProxiesHTTPPort;
extern CFStringRef const kSCPropNetProxiesHTTPProxy;
extern CFStringRef const kSCPropNetProxiesHTTPSEnable;
extern CFStringRef const kSCPropNetProxiesHTTPSPort;
extern CFStringRef const kSCPropNetProxiesHTTPSProxy;
extern CFStringRef const kSCPropNetProxiesSOCKSEnable;
extern CFStringRef const kSCPropNetProxiesSOCKSPort;
extern CFStringRef const kSCPropNetProxiesSOCKSProxy;
// NOLINTEND(readability-identifier-naming)

}  // namespace Platform
}  // namespace Ostrel
