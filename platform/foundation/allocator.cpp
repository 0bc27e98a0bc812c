// Allocators: the built-in constants, and those made from a context.
#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>

#include "foundation/object.h"
#include "foundation/runtime.h"
#include "foundation/sizes.h"

struct __CFAllocator {
  CFRuntimeBase base;
  CFAllocatorContext context;
};

namespace cf {
namespace {

// Every block has this much room beyond what was asked for: callers that grow an array by less than its next
// element rely on it, whatever allocator they are handed.
constexpr CFIndex kTailBytes = 32;

constexpr CFIndex withTail(CFIndex size) noexcept {
  return size < 0 || size > LONG_MAX - kTailBytes ? -1 : size + kTailBytes;
}

// Asks for large pages where a block has room for some. A bitmap's first writing costs more in page faults
// than in pixels: 130 MB take 100 ms in pages of 4 KiB and 13 ms in pages of 2 MiB. Mere advice: a system
// that has none stays as it was.
void adviseLargePages(void *block, std::size_t size) noexcept {
  constexpr std::size_t kLargePage = std::size_t{2} << 20;
  if (!block || size < 2 * kLargePage) return;
  const std::size_t before = -reinterpret_cast<std::uintptr_t>(block) % kLargePage;
  const std::size_t whole = (size - before) / kLargePage * kLargePage;
  static_cast<void>(madvise(static_cast<char *>(block) + before, whole, MADV_HUGEPAGE));
}

void *mallocAllocate(CFIndex size, CFOptionFlags, void *) {
  void *block = std::malloc(static_cast<std::size_t>(size));
  adviseLargePages(block, static_cast<std::size_t>(size));
  return block;
}

void *mallocReallocate(void *block, CFIndex newSize, CFOptionFlags, void *) {
  return std::realloc(block, static_cast<std::size_t>(newSize));
}

void mallocDeallocate(void *block, void *) { std::free(block); }

constexpr __CFAllocator builtIn(const CFAllocatorContext &context) noexcept {
  return {{kAllocatorTypeID, nullptr, kImmortal}, context};
}

constexpr CFAllocatorContext kMallocContext{
    0, nullptr, nullptr, nullptr, nullptr, mallocAllocate, mallocReallocate, mallocDeallocate, nullptr};

constinit const __CFAllocator gSystemDefault = builtIn(kMallocContext);
constinit const __CFAllocator gMalloc = builtIn(kMallocContext);
constinit const __CFAllocator gNull = builtIn({});

constinit thread_local CFAllocatorRef gThreadDefault = nullptr;

void finalizeAllocator(CFTypeRef object) {
  const CFAllocatorContext &context = objectIn<__CFAllocator>(object).context;
  if (context.release) context.release(context.info);
}

CFStringRef copyAllocatorDescription(CFTypeRef object) {
  const CFAllocatorContext &context = objectIn<__CFAllocator>(object).context;
  const Ref own = adopt(context.copyDescription ? context.copyDescription(context.info) : nullptr);
  if (!own) return CFStringCreateWithFormat(nullptr, nullptr, CFSTR("<CFAllocator %p>"), object);
  return CFStringCreateWithFormat(nullptr, nullptr, CFSTR("<CFAllocator %p>{%@}"), object, own.get());
}

}  // namespace

constinit const CFRuntimeClass kAllocatorClass{0,       "CFAllocator",     nullptr,
                                               nullptr, finalizeAllocator, nullptr,
                                               nullptr, nullptr,           copyAllocatorDescription};

}  // namespace cf

using namespace cf;

constinit const CFAllocatorRef kCFAllocatorDefault = nullptr;
constinit const CFAllocatorRef kCFAllocatorSystemDefault = &gSystemDefault;
constinit const CFAllocatorRef kCFAllocatorMalloc = &gMalloc;
constinit const CFAllocatorRef kCFAllocatorNull = &gNull;

CFTypeID CFAllocatorGetTypeID(void) { return kAllocatorTypeID; }

CFAllocatorRef CFAllocatorCreate(CFAllocatorRef allocator, const CFAllocatorContext *context) {
  if (!context || context->version != 0) return nullptr;
  auto made = Ref<__CFAllocator>::adopt(newInstance<__CFAllocator>(allocator, kAllocatorTypeID));
  if (!made) return nullptr;
  made->context = *context;
  if (context->retain) made->context.info = const_cast<void *>(context->retain(context->info));
  return made.give();
}

void CFAllocatorGetContext(CFAllocatorRef allocator, CFAllocatorContext *context) {
  if (context && context->version == 0) *context = allocatorOrDefault(allocator)->context;
}

void *CFAllocatorAllocate(CFAllocatorRef allocator, CFIndex size, CFOptionFlags hint) {
  const CFAllocatorContext &context = allocatorOrDefault(allocator)->context;
  const CFIndex whole = withTail(size);
  if (whole < 0 || !context.allocate) return nullptr;
  return context.allocate(whole, hint, context.info);
}

void *CFAllocatorReallocate(CFAllocatorRef allocator, void *block, CFIndex newSize, CFOptionFlags hint) {
  if (!block) return CFAllocatorAllocate(allocator, newSize, hint);
  if (newSize == 0) {
    CFAllocatorDeallocate(allocator, block);
    return nullptr;
  }
  const CFAllocatorContext &context = allocatorOrDefault(allocator)->context;
  const CFIndex whole = withTail(newSize);
  if (whole < 0 || !context.reallocate) return nullptr;
  return context.reallocate(block, whole, hint, context.info);
}

void CFAllocatorDeallocate(CFAllocatorRef allocator, void *block) {
  const CFAllocatorContext &context = allocatorOrDefault(allocator)->context;
  if (block && context.deallocate) context.deallocate(block, context.info);
}

CFIndex CFAllocatorGetPreferredSizeForSize(CFAllocatorRef allocator, CFIndex size, CFOptionFlags hint) {
  const CFAllocatorContext &context = allocatorOrDefault(allocator)->context;
  const CFIndex whole = withTail(size);
  if (whole < 0 || !context.preferredSize) return size;
  const CFIndex preferred = context.preferredSize(whole, hint, context.info) - kTailBytes;
  return preferred > size ? preferred : size;
}

CFAllocatorRef CFAllocatorGetDefault(void) {
  return gThreadDefault ? gThreadDefault : kCFAllocatorSystemDefault;
}

void CFAllocatorSetDefault(CFAllocatorRef allocator) {
  auto next = Ref<CFAllocatorRef>::share(allocator);
  const auto last = Ref<CFAllocatorRef>::adopt(gThreadDefault);
  gThreadDefault = next.give();
}
