/* The handle alone: format options are passed as a dictionary, and none are defined, so that callers pass
 * NULL. */
#ifndef COREFOUNDATION_CFDICTIONARY_H
#define COREFOUNDATION_CFDICTIONARY_H

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

typedef const struct __CFDictionary *CFDictionaryRef;

CF_EXTERN_C_END

#endif
