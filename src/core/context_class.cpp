// The drawing context class: registration and callbacks.
#include "core/context.h"
#include "core/runtime_class.h"
#include "foundation/ref.h"

namespace {

Boolean gDRAVCFContextInited = 0;
CFTypeID kDRAVCFContextID = 0;
CFRuntimeClass contextClass;

}  // namespace

void DRAVCFContextClassInitialize() {
  contextClass = {0,
                  "DRAVCFContext",
                  DRAVCFContextInit,
                  DRAVCFContextCopy,
                  DRAVCFContextFinalize,
                  DRAVCFContextEqual,
                  DRAVCFContextHash,
                  DRAVCFContextCopyFormattingDesc,
                  DRAVCFContextCopyDebugDesc};
  kDRAVCFContextID = _CFRuntimeRegisterClass(&contextClass);
}

DRAVCFContextRef DRAVCFContextCreatePrivate(CFAllocatorRef allocator) {
  return drav::createInstance<__DRAVCFContext>(allocator, gDRAVCFContextInited, DRAVCFContextClassInitialize,
                                               kDRAVCFContextID);
}

CFTypeID DRAVCFContextGetTypeID(void) { return kDRAVCFContextID; }

void DRAVCFContextInit(CFTypeRef object) { drav::cleared<__DRAVCFContext>(object); }

// The copy draws where its source draws: both have the one bitmap context. Its own memory is of the same
// size, and nobody draws into that.
CFTypeRef DRAVCFContextCopy(CFAllocatorRef allocator, CFTypeRef source) {
  if (!source) return nullptr;
  const auto &from = cf::objectIn<__DRAVCFContext>(source);
  cf::Ref copy = cf::adopt(DRAVCFContextCreatePrivate(allocator));
  if (!copy) return nullptr;
  copy->cgContext = cf::share(from.cgContext).give();
  copy->drawnMemory = cf::share(from.drawnMemory).give();
  if (!from.buffer || !from.cgContext) return copy.give();
  const size_t bytesPerRow = CGBitmapContextGetBytesPerRow(from.cgContext);
  const size_t height = CGBitmapContextGetHeight(from.cgContext);
  cf::Ref memory = drav::allocateMemory(allocator, cf::bitmapBytes(bytesPerRow, height));
  if (!memory) return nullptr;
  copy->buffer = drav::bytesOf(memory.get());
  copy->ownMemory = memory.give();
  copy->ownsBuffer = 1;
  return copy.give();
}

void DRAVCFContextFinalize(CFTypeRef object) {
  auto *context = cf::mutableIn<__DRAVCFContext>(object);
  CGContextRelease(context->cgContext);
  context->cgContext = nullptr;
  const cf::Ref own = cf::adopt(context->ownMemory);
  const cf::Ref drawn = cf::adopt(context->drawnMemory);
  context->buffer = nullptr;
}

Boolean DRAVCFContextEqual(CFTypeRef a, CFTypeRef b) {
  if (a == b) return 1;
  CGContextRef contextA = cf::objectIn<__DRAVCFContext>(a).cgContext;
  CGContextRef contextB = cf::objectIn<__DRAVCFContext>(b).cgContext;
  return contextA && contextB && CFEqual(contextA, contextB);
}

CFHashCode DRAVCFContextHash(CFTypeRef object) {
  CGContextRef cgContext = cf::objectIn<__DRAVCFContext>(object).cgContext;
  return cgContext ? CFHash(cgContext) : 0;
}

// The description serves as a format, so that "%%" in it prints as one percent sign.
CFStringRef DRAVCFContextCopyFormattingDesc(CFTypeRef object, CFDictionaryRef) {
  CGContextRef cgContext = cf::objectIn<__DRAVCFContext>(object).cgContext;
  const cf::Ref description = cf::adopt(cgContext ? CFCopyDescription(cgContext) : nullptr);
  return CFStringCreateWithFormatNoArguments(CFGetAllocator(object), nullptr,
                                             description ? description.get() : CFSTR("(NULL)"));
}

CFStringRef DRAVCFContextCopyDebugDesc(CFTypeRef object) {
  return DRAVCFContextCopyFormattingDesc(object, nullptr);
}
