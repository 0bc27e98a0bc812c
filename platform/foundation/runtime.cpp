// Classes, instances and counting.
#include "foundation/runtime.h"

#include <CoreFoundation/CFString.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "foundation/ref.h"
#include "foundation/sizes.h"

namespace cf {
namespace {

// A fixed table: a class is looked up on every last release, and no lock is wanted there.
constexpr CFTypeID kMaxClasses = 1024;
constinit std::array<std::atomic<const CFRuntimeClass *>, kMaxClasses> gClasses{nullptr, &kAllocatorClass};
constinit std::atomic<CFTypeID> gNextTypeID{kAllocatorTypeID + 1};

[[noreturn]] void fault(const char *function, const char *what, CFTypeRef object) noexcept {
  std::fprintf(stderr, "%s - %s (%p)\n", function, what, object);
  std::abort();
}

CFRuntimeBase *baseOf(CFTypeRef object) noexcept {
  return static_cast<CFRuntimeBase *>(const_cast<void *>(object));
}

std::atomic_ref<std::uint64_t> countOf(CFTypeRef object) noexcept {
  return std::atomic_ref<std::uint64_t>(baseOf(object)->_count);
}

const CFRuntimeClass *classOf(CFTypeRef object) noexcept {
  return _CFRuntimeGetClassWithTypeID(baseOf(object)->_typeID);
}

void destroy(CFTypeRef object) noexcept {
  countOf(object).store(kDying, std::memory_order_relaxed);
  if (const auto finalize = classOf(object)->finalize) finalize(object);
  countOf(object).store(0, std::memory_order_relaxed);
  const CFAllocatorRef allocator = baseOf(object)->_allocator;
  CFAllocatorDeallocate(allocator, baseOf(object));
  CFRelease(allocator);
}

}  // namespace

void makeImmortal(CFTypeRef object) noexcept { countOf(object).store(kImmortal, std::memory_order_release); }

}  // namespace cf

using namespace cf;

CFTypeID _CFRuntimeRegisterClass(const CFRuntimeClass *cls) {
  if (!cls) return _kCFRuntimeNotATypeID;
  CFTypeID typeID = gNextTypeID.load(std::memory_order_relaxed);
  do {
    if (typeID >= kMaxClasses) return _kCFRuntimeNotATypeID;
  } while (!gNextTypeID.compare_exchange_weak(typeID, typeID + 1, std::memory_order_relaxed));
  gClasses[typeID].store(cls, std::memory_order_release);
  return typeID;
}

const CFRuntimeClass *_CFRuntimeGetClassWithTypeID(CFTypeID typeID) {
  return typeID < kMaxClasses ? gClasses[typeID].load(std::memory_order_acquire) : nullptr;
}

CFTypeRef _CFRuntimeCreateInstance(CFAllocatorRef allocator, CFTypeID typeID, CFIndex extraBytes,
                                   unsigned char *) {
  const CFRuntimeClass *cls = _CFRuntimeGetClassWithTypeID(typeID);
  if (!cls || extraBytes < 0) return nullptr;
  const Size bytes = sum(sizeof(CFRuntimeBase), static_cast<std::size_t>(extraBytes));
  if (!bytes || *bytes > kMaxBlockBytes) return nullptr;
  const CFAllocatorRef chosen = allocatorOrDefault(allocator);
  void *memory = CFAllocatorAllocate(chosen, static_cast<CFIndex>(*bytes), 0);
  if (!memory) return nullptr;
  std::memset(memory, 0, *bytes);
  *baseOf(memory) = {typeID, Ref<CFAllocatorRef>::share(chosen).give(), 1};
  if (cls->init) cls->init(memory);
  return memory;  // NOLINT(clang-analyzer-osx.cocoa.RetainCount): this is where the first count comes from
}

CFTypeRef CFRetain(CFTypeRef object) {
  if (!object) fault("CFRetain", "no object", object);
  const auto count = countOf(object);
  if (count.load(std::memory_order_relaxed) & kImmortal) return object;
  if (count.fetch_add(1, std::memory_order_relaxed) == 0) fault("CFRetain", "the object was freed", object);
  return object;
}

void CFRelease(CFTypeRef object) {
  if (!object) fault("CFRelease", "no object", object);
  const auto count = countOf(object);
  if (count.load(std::memory_order_relaxed) & kImmortal) return;
  // Earlier writes of every thread to the object come before its end.
  const std::uint64_t before = count.fetch_sub(1, std::memory_order_acq_rel);
  if (before == 0 || before == kDying) fault("CFRelease", "no count is left", object);
  if (before == 1) destroy(object);
}

CFIndex CFGetRetainCount(CFTypeRef object) {
  if (!object) return 0;
  const std::uint64_t count = countOf(object).load(std::memory_order_relaxed);
  return count & kImmortal ? LONG_MAX : static_cast<CFIndex>(count & ~kDying);
}

CFTypeID CFGetTypeID(CFTypeRef object) {
  return object ? baseOf(object)->_typeID : CFTypeID{_kCFRuntimeNotATypeID};
}

Boolean CFEqual(CFTypeRef object1, CFTypeRef object2) {
  if (object1 == object2) return true;
  if (!object1 || !object2 || CFGetTypeID(object1) != CFGetTypeID(object2)) return false;
  const auto equal = classOf(object1)->equal;
  return equal && equal(object1, object2);
}

CFHashCode CFHash(CFTypeRef object) {
  if (!object) return 0;
  const auto hash = classOf(object)->hash;
  return hash ? hash(object) : reinterpret_cast<CFHashCode>(object);
}

CFStringRef CFCopyDescription(CFTypeRef object) {
  if (!object) return nullptr;
  const CFRuntimeClass *cls = classOf(object);
  if (cls->copyDebugDesc) return cls->copyDebugDesc(object);
  return CFStringCreateWithFormat(CFGetAllocator(object), nullptr, CFSTR("<%s %p>"), cls->className, object);
}

CFStringRef CFCopyTypeIDDescription(CFTypeID typeID) {
  const CFRuntimeClass *cls = _CFRuntimeGetClassWithTypeID(typeID);
  return cls ? CFStringCreateWithCString(nullptr, cls->className, kCFStringEncodingUTF8) : nullptr;
}

CFAllocatorRef CFGetAllocator(CFTypeRef object) {
  const CFAllocatorRef allocator = object ? baseOf(object)->_allocator : nullptr;
  return allocator ? allocator : kCFAllocatorSystemDefault;
}

void CFShow(CFTypeRef object) {
  const Ref description = adopt(CFCopyDescription(object));
  const Ref line = adopt(CFStringCreateWithFormat(nullptr, nullptr, CFSTR("%@\n"), description.get()));
  if (!line) return;
  std::array<UInt8, 1024> bytes;
  const CFIndex length = CFStringGetLength(line.get());
  for (CFIndex at = 0, units = 1; at < length && units > 0; at += units) {
    CFIndex used = 0;
    units = CFStringGetBytes(line.get(), CFRangeMake(at, length - at), kCFStringEncodingUTF8, '?', false,
                             bytes.data(), static_cast<CFIndex>(bytes.size()), &used);
    std::fwrite(bytes.data(), 1, static_cast<std::size_t>(used), stderr);
  }
}
