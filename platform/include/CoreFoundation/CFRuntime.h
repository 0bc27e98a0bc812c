/* For those who bring classes of their own: what an instance begins with, and how a class becomes known. */
#ifndef COREFOUNDATION_CFRUNTIME_H
#define COREFOUNDATION_CFRUNTIME_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFDictionary.h>

CF_EXTERN_C_BEGIN

/* The first field of every instance. It belongs to the runtime: nobody else reads or writes it. */
typedef struct __CFRuntimeBase {
  CFTypeID _typeID;
  CFAllocatorRef _allocator; /* retained; NULL stands for kCFAllocatorSystemDefault */
  uint64_t _count;           /* atomic; behind the fields that a freed block overwrites first */
} CFRuntimeBase;

/* What the runtime knows of a class. Every callback may be NULL. */
typedef struct __CFRuntimeClass {
  CFIndex version; /* 0 */
  const char *className;
  /* Brings a zeroed new instance into its first state. */
  void (*init)(CFTypeRef object);
  /* Gives a new instance equal to object, owned by the caller, or NULL. The runtime never calls it: it is
   * reached through the class record. */
  CFTypeRef (*copy)(CFAllocatorRef allocator, CFTypeRef object);
  /* Gives back what the instance owns, before its memory goes. It may retain and release the object in
   * balance; the object goes all the same. */
  void (*finalize)(CFTypeRef object);
  /* Only ever asked about two different objects of this class. NULL: no two are equal. */
  Boolean (*equal)(CFTypeRef object1, CFTypeRef object2);
  CFHashCode (*hash)(CFTypeRef object); /* NULL: the address */
  /* What %@ prints; NULL: what copyDebugDesc gives. A new string, or NULL. */
  CFStringRef (*copyFormattingDesc)(CFTypeRef object, CFDictionaryRef formatOptions);
  /* What CFCopyDescription gives. A new string, or NULL. */
  CFStringRef (*copyDebugDesc)(CFTypeRef object);
} CFRuntimeClass;

/* Never a class: what a type identifier is before its class is registered. */
enum { _kCFRuntimeNotATypeID = 0 };

/* Makes a class known. May be called from any thread at any time.
 *
 * cls    borrowed for the rest of the process's life.
 * Gives  the new class's identifier, never 0; 0 without a class, or once 1023 classes are registered. */
CF_EXPORT CFTypeID _CFRuntimeRegisterClass(const CFRuntimeClass *cls);

/* Gives   the record that the class was registered with; NULL for a number that is no class. */
CF_EXPORT const CFRuntimeClass *_CFRuntimeGetClassWithTypeID(CFTypeID typeID);

/* Makes an instance with one count.
 *
 * allocator   gives the instance's memory, and is retained by it.
 * extraBytes  size of the instance beyond its CFRuntimeBase; these bytes are zeroed, then init is called.
 * category    unused: NULL.
 * Gives       the instance, owned by the caller; NULL for an unknown class, a negative size, or if memory
 *             runs out. */
CF_EXPORT CFTypeRef _CFRuntimeCreateInstance(CFAllocatorRef allocator, CFTypeID typeID, CFIndex extraBytes,
                                             unsigned char *category);

CF_EXTERN_C_END

#endif
