// The main display's colour space, made once and shared by all.
#include <DravKit/DravKit.h>

#include "graphics/profile.h"

CGColorSpaceRef DRAVCGColorSpaceCreateMainDisplay(void) {
  static CGColorSpaceRef shared = nullptr;  // keeps its count for the life of the process
  if (!shared) {
    CMProfileRef profile = nullptr;
    if (CMGetSystemProfile(&profile) == 0 && profile) {
      shared = CGColorSpaceCreateWithPlatformColorSpace(profile);
      CMCloseProfile(profile);
    }
  }
  return CGColorSpaceRetain(shared);
}
