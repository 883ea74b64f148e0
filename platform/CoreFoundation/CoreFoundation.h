#pragma once

#include <cstdint>

/// What the proxy lookup calls of the macOS framework of this name, for other systems, under the
/// framework's names and with its signatures. Reads snapshots of the scripted `SystemSettings`.
/// Objects are immutable, so as safe to read from several threads as they are on macOS.

// NOLINTBEGIN(readability-identifier-naming): the names are the framework's.
extern "C" {

using Boolean = unsigned char;
using CFIndex = long;
using CFTypeRef = void const*;
using CFDictionaryRef = struct CFDictionaryObject const*;
using CFNumberRef = struct CFNumberObject const*;
using CFStringRef = struct CFStringObject const*;

using CFStringEncoding = std::uint32_t;
enum CFStringBuiltInEncodings : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };
enum CFNumberType : CFIndex { kCFNumberIntType = 9 };

/// Gives the snapshot `object` back, which ends it and its values.
void CFRelease(CFTypeRef object);

/// The value of `key`, which the dictionary owns; null if there is none.
void const* CFDictionaryGetValue(CFDictionaryRef dictionary, void const* key);

/// Length in UTF-16 units. `text` must be a value of a snapshot; one that is no text has length 0.
CFIndex CFStringGetLength(CFStringRef text);

/// Writes the text with a terminating NUL into `buffer`, of `bufferSize` bytes; false if it does
/// not fit, cannot be converted or is no text. UTF-8 is the only `encoding`.
Boolean CFStringGetCString(CFStringRef text, char* buffer, CFIndex bufferSize,
                           CFStringEncoding encoding);

/// Writes the low 32 bits of the number to the `int` at `value`; false if that loses some of it.
/// What is no number leaves `value` as it is. `kCFNumberIntType` is the only `type`.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

}  // extern "C"
// NOLINTEND(readability-identifier-naming)
