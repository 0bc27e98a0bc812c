/* Strings: sequences of UTF-16 units, whatever encoding they came from. */
#ifndef COREFOUNDATION_CFSTRING_H
#define COREFOUNDATION_CFSTRING_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFDictionary.h>
#include <stdarg.h>

CF_EXTERN_C_BEGIN

/* How text is written in bytes. Any other number is refused. */
typedef uint32_t CFStringEncoding;
#define kCFStringEncodingInvalidId ((CFStringEncoding)0xFFFFFFFFU)
enum {
  kCFStringEncodingISOLatin1 = 0x0201,
  kCFStringEncodingASCII = 0x0600,
  kCFStringEncodingUnicode = 0x0100, /* the same as UTF16 */
  kCFStringEncodingUTF16 =
      0x0100, /* this machine's order; a byte order mark is obeyed in, written on request out */
  kCFStringEncodingUTF16BE = 0x10000100,
  kCFStringEncodingUTF16LE = 0x14000100,
  kCFStringEncodingUTF8 = 0x08000100
};

typedef CFOptionFlags CFStringCompareFlags;
enum {
  kCFCompareCaseInsensitive = 1 /* by Unicode's simple case folding */
};

CF_EXPORT CFTypeID CFStringGetTypeID(void);

/* ---- Making strings ---- */

/* A constant string from a literal in UTF-8: one object for equal literals, never freed, borrowed by
 * everyone. */
#define CFSTR(literal) __CFStringMakeConstantString("" literal "")
CF_EXPORT CFStringRef __CFStringMakeConstantString(const char *cString);

/* Gives   a new string with the text of a zero-terminated string, owned by the caller; NULL if the bytes
 *         are not valid in the encoding, or memory runs out. */
CF_EXPORT CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char *cString,
                                                CFStringEncoding encoding);

/* The same for length bytes, zero bytes included.
 *
 * isExternalRepresentation  true: a byte order mark at the start is obeyed and left out. */
CF_EXPORT CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8 *bytes, CFIndex length,
                                              CFStringEncoding encoding, Boolean isExternalRepresentation);

/* The same for length UTF-16 units of this machine's order; they are not checked. */
CF_EXPORT CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar *characters,
                                                   CFIndex length);

/* Gives   the units of range as a new string, owned by the caller; NULL if the range leaves the string. */
CF_EXPORT CFStringRef CFStringCreateWithSubstring(CFAllocatorRef allocator, CFStringRef string,
                                                  CFRange range);

/* Gives   a string with the same text that cannot change, owned by the caller; string itself, retained,
 *         where it cannot change and lives on that allocator. */
CF_EXPORT CFStringRef CFStringCreateCopy(CFAllocatorRef allocator, CFStringRef string);

/* Gives   a new empty string that can change, owned by the caller.
 *
 * maxLength  in UTF-16 units; what would make it longer is not appended. 0: no limit. */
CF_EXPORT CFMutableStringRef CFStringCreateMutable(CFAllocatorRef allocator, CFIndex maxLength);
CF_EXPORT CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef allocator, CFIndex maxLength,
                                                       CFStringRef string);

/* Makes a string from a format.
 *
 * formatOptions  NULL; anything else is ignored.
 * format         text with conversions as printf's: d i u o x X c s p e E f F g G a A, with flags, width,
 *                precision, * and the length letters hh h l ll q j z t L; %% for a percent sign; %C and %S
 *                for one UTF-16 unit and for a zero-terminated run of them; and %@ for any object, as it
 *                describes itself. %s takes UTF-8. NULL prints as "(null)". Numbers are written the same in
 *                every locale; a width or a number's precision above 4096 counts as 4096. What is no
 *                conversion is copied as it stands and reads no argument; %n reads its argument and writes
 *                nothing.
 * Gives          a new string, owned by the caller; NULL without a format or if memory runs out. */
CF_EXPORT CFStringRef CFStringCreateWithFormat(CFAllocatorRef allocator, CFDictionaryRef formatOptions,
                                               CFStringRef format, ...);
CF_EXPORT CFStringRef CFStringCreateWithFormatAndArguments(CFAllocatorRef allocator,
                                                           CFDictionaryRef formatOptions, CFStringRef format,
                                                           va_list arguments);

/* The same for a format whose author is not known, such as a description: "%%" gives a percent sign, every
 * other conversion is copied as it stands, and no argument is ever read. An extension. */
CF_EXPORT CFStringRef CFStringCreateWithFormatNoArguments(CFAllocatorRef allocator,
                                                          CFDictionaryRef formatOptions, CFStringRef format);

/* ---- Reading ---- */

/* Gives   the length in UTF-16 units. */
CF_EXPORT CFIndex CFStringGetLength(CFStringRef string);

/* Gives   the unit at index; 0 outside the string. */
CF_EXPORT UniChar CFStringGetCharacterAtIndex(CFStringRef string, CFIndex index);

/* Copies the units of range to buffer, which holds range.length of them. A range that leaves the string
 * copies nothing. */
CF_EXPORT void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar *buffer);

/* Gives   the units themselves, borrowed until the string changes or goes; not terminated. */
CF_EXPORT const UniChar *CFStringGetCharactersPtr(CFStringRef string);

/* Writes the whole text, terminated by a zero, to buffer.
 *
 * bufferSize  in bytes, the zero included.
 * Gives       false if it does not fit, or cannot be written in the encoding; the buffer then holds no
 *             text. */
CF_EXPORT Boolean CFStringGetCString(CFStringRef string, char *buffer, CFIndex bufferSize,
                                     CFStringEncoding encoding);

/* Gives   the text as zero-terminated bytes where they are at hand, as for constant ASCII strings,
 *         borrowed; NULL otherwise: be ready to call CFStringGetCString. */
CF_EXPORT const char *CFStringGetCStringPtr(CFStringRef string, CFStringEncoding encoding);

/* Writes as many whole characters of range as fit.
 *
 * lossByte                  stands for each character that the encoding lacks; 0: stop there.
 * isExternalRepresentation  true: UTF16 begins with a byte order mark.
 * buffer                    bufferSize bytes; NULL only counts.
 * usedBytes                 the bytes written or counted; may be NULL.
 * Gives                     the number of UTF-16 units written. */
CF_EXPORT CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                                   UInt8 lossByte, Boolean isExternalRepresentation, UInt8 *buffer,
                                   CFIndex bufferSize, CFIndex *usedBytes);

/* Gives   bytes that are enough for length UTF-16 units in the encoding, without a terminating zero;
 *         kCFNotFound for an unknown encoding or if that is too many. */
CF_EXPORT CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);

/* Gives   UTF-8: what narrow text is in here, file names included. */
CF_EXPORT CFStringEncoding CFStringGetSystemEncoding(void);

/* The string as a file name, terminated by a zero: CFStringGetCString in UTF-8, but a string with a zero
 * inside names no file and gives false. */
CF_EXPORT Boolean CFStringGetFileSystemRepresentation(CFStringRef string, char *buffer, CFIndex bufferSize);

/* Compares by UTF-16 units, or with kCFCompareCaseInsensitive by folded characters. NULL is less than any
 * string. */
CF_EXPORT CFComparisonResult CFStringCompare(CFStringRef string1, CFStringRef string2,
                                             CFStringCompareFlags options);
CF_EXPORT Boolean CFStringHasPrefix(CFStringRef string, CFStringRef prefix);
CF_EXPORT Boolean CFStringHasSuffix(CFStringRef string, CFStringRef suffix);

/* ---- Changing ----
 * Each leaves the string as it was if it cannot change, if memory runs out or if the result would be too
 * long. */

CF_EXPORT void CFStringAppend(CFMutableStringRef string, CFStringRef appended);
CF_EXPORT void CFStringAppendCharacters(CFMutableStringRef string, const UniChar *characters, CFIndex length);
CF_EXPORT void CFStringAppendCString(CFMutableStringRef string, const char *cString,
                                     CFStringEncoding encoding);

/* Formats as CFStringCreateWithFormat. */
CF_EXPORT void CFStringAppendFormat(CFMutableStringRef string, CFDictionaryRef formatOptions,
                                    CFStringRef format, ...);
CF_EXPORT void CFStringAppendFormatAndArguments(CFMutableStringRef string, CFDictionaryRef formatOptions,
                                                CFStringRef format, va_list arguments);

CF_EXTERN_C_END

#endif
