/* The object runtime and the basic types that everything else stands on.
 *
 * Conventions, which hold for every function here unless its comment says otherwise:
 *
 *  1. Every object is counted. A function with Create or Copy in its name gives the caller one count, to be
 *     handed back with CFRelease; a Get function lends an object that lives as long as the one it came from.
 *  2. The allocator argument decides where the new object, and what it stores, lives. NULL means the
 *     current default allocator. The object keeps its allocator alive.
 *  3. Failure is NULL, false, 0 or -1, as stated; nothing is thrown, and nothing half built is left behind.
 *  4. Objects that cannot change may be used from any number of threads at once; counting is atomic. Mutable
 *     objects and streams belong to one thread at a time.
 *  5. Lengths and positions are CFIndex, signed; a negative one is refused as the function's failure.
 *  6. NULL where an object is asked for is answered as failure, except by CFRetain and CFRelease, which treat
 *     it as the programming error that it is. */
#ifndef COREFOUNDATION_COREFOUNDATION_H
#define COREFOUNDATION_COREFOUNDATION_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFRuntime.h>
#include <CoreFoundation/CFStream.h>
#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFURL.h>

#endif
