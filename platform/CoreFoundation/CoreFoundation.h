#pragma once

#include <cstdint>

/// Replacement, on other systems, for the parts of the macOS framework of this name that the proxy
/// lookup uses, with the framework's names and signatures. Reads snapshots of the scripted
/// `SystemSettings`. Objects are immutable, so they are as safe to read from several threads as on
/// macOS.
///
/// The names are in an inline namespace, which the lookup finds without a prefix, and have no C
/// linkage: an application may have functions of these names.
namespace Ostrel {
inline namespace Platform {

// NOLINTBEGIN(readability-identifier-naming): the names are the framework's.

using Boolean = unsigned char;
using CFIndex = long;
using CFTypeRef = void const*;
using CFDictionaryRef = struct CFDictionaryObject const*;
using CFNumberRef = struct CFNumberObject const*;
using CFStringRef = struct CFStringObject const*;

using CFStringEncoding = std::uint32_t;
enum CFStringBuiltInEncodings : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };
enum CFNumberType : CFIndex { kCFNumberIntType = 9 };

/// Releases the snapshot `object` and its values.
void CFRelease(CFTypeRef object);

/// The value of `key`, which the dictionary owns; null if there is none.
void const* CFDictionaryGetValue(CFDictionaryRef dictionary, void const* key);

/// Length in UTF-16 units; 0 if `text` is not a text. `text` must be a value of a snapshot.
CFIndex CFStringGetLength(CFStringRef text);

/// Writes the text with a terminating NUL into `buffer`, of `bufferSize` bytes; false if it does
/// not fit, cannot be converted or is not a text. UTF-8 is the only `encoding`.
Boolean CFStringGetCString(CFStringRef text, char* buffer, CFIndex bufferSize,
                           CFStringEncoding encoding);

/// Writes the low 32 bits of the number to the `int` at `value`; false if the number does not fit.
/// Writes nothing if it is not a number. `kCFNumberIntType` is the only `type`.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

// NOLINTEND(readability-identifier-naming)

}  // namespace Platform
}  // namespace Ostrel
