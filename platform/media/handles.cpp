#include "media/handles.h"

#include <cstdlib>
#include <cstring>

namespace {

// A handle is a pointer to the first field.
struct Block {
  Ptr master;
  Size size;
};

thread_local OSErr lastError = noErr;

OSErr report(OSErr error) noexcept {
  lastError = error;
  return error;
}

Block *blockOf(Handle handle) noexcept { return reinterpret_cast<Block *>(handle); }

// malloc may answer 0 bytes with NULL, which would look like a failure.
size_t roomFor(Size byteCount) noexcept { return byteCount ? static_cast<size_t>(byteCount) : 1; }

Handle makeHandle(void *memory, Size byteCount) noexcept {
  auto *block = static_cast<Block *>(std::malloc(sizeof(Block)));
  if (!memory || !block) {
    std::free(memory);
    std::free(block);
    report(memFullErr);
    return nullptr;
  }
  *block = {static_cast<Ptr>(memory), byteCount};
  report(noErr);
  return &block->master;
}

}  // namespace

Handle NewHandle(Size byteCount) {
  if (byteCount < 0) {
    report(paramErr);
    return nullptr;
  }
  return makeHandle(std::calloc(roomFor(byteCount), 1), byteCount);
}

void DisposeHandle(Handle handle) {
  if (!handle) {
    report(nilHandleErr);
    return;
  }
  std::free(*handle);
  std::free(blockOf(handle));
  report(noErr);
}

Size GetHandleSize(Handle handle) {
  report(handle ? noErr : nilHandleErr);
  return handle ? blockOf(handle)->size : 0;
}

void SetHandleSize(Handle handle, Size byteCount) {
  if (!handle || byteCount < 0) {
    report(handle ? paramErr : nilHandleErr);
    return;
  }
  Block *block = blockOf(handle);
  void *memory = std::realloc(block->master, roomFor(byteCount));
  if (!memory) {
    report(memFullErr);
    return;
  }
  block->master = static_cast<Ptr>(memory);
  if (byteCount > block->size) {
    std::memset(block->master + block->size, 0, static_cast<size_t>(byteCount - block->size));
  }
  block->size = byteCount;
  report(noErr);
}

void HLock(Handle handle) { report(handle ? noErr : nilHandleErr); }
void HUnlock(Handle handle) { report(handle ? noErr : nilHandleErr); }

OSErr PtrToHand(const void *source, Handle *destination, Size byteCount) {
  if (!destination) return report(paramErr);
  *destination = nullptr;
  if (byteCount < 0 || (!source && byteCount)) return report(paramErr);
  void *memory = std::malloc(roomFor(byteCount));
  if (memory && byteCount) std::memcpy(memory, source, static_cast<size_t>(byteCount));
  *destination = makeHandle(memory, byteCount);
  return MemError();
}

OSErr MemError(void) { return lastError; }
