// The linker sends calls of malloc here (--wrap=malloc), and those of __real_malloc to the real one.
#include "failing_malloc.h"

#include <lcms2.h>

#include <cstddef>
#include <utility>

namespace {

thread_local long requestsLeft = 0;  // 0: none fails
thread_local bool hasFailed = false;

bool mustFail() noexcept {
  if (requestsLeft == 0 || --requestsLeft != 0) return false;
  hasFailed = true;
  return true;
}

// The colour library takes its memory through a function of ours, and crashes where a conversion that it
// sets up gets none: a shared library like the others, it goes on having memory.
template <class Call>
auto withMemory(Call call) {
  const long kept = std::exchange(requestsLeft, 0);
  const auto result = call();
  requestsLeft = kept;
  return result;
}

}  // namespace

extern "C" {
void *__real_malloc(std::size_t size);
void *__real_calloc(std::size_t count, std::size_t size);
void *__real_realloc(void *block, std::size_t size);
void *__wrap_malloc(std::size_t size);
void *__wrap_calloc(std::size_t count, std::size_t size);
void *__wrap_realloc(void *block, std::size_t size);

void *__wrap_malloc(std::size_t size) { return mustFail() ? nullptr : __real_malloc(size); }
void *__wrap_calloc(std::size_t count, std::size_t size) {
  return mustFail() ? nullptr : __real_calloc(count, size);
}
void *__wrap_realloc(void *block, std::size_t size) {
  return mustFail() ? nullptr : __real_realloc(block, size);
}

cmsContext __real_cmsCreateContext(void *plugin, void *data);
cmsHPROFILE __real_cmsOpenProfileFromMemTHR(cmsContext context, const void *bytes, cmsUInt32Number size);
cmsHPROFILE __real_cmsCreate_sRGBProfileTHR(cmsContext context);
cmsHPROFILE __real_cmsCreateXYZProfileTHR(cmsContext context);
cmsBool __real_cmsSaveProfileToMem(cmsHPROFILE profile, void *bytes, cmsUInt32Number *size);
cmsHTRANSFORM __real_cmsCreateTransformTHR(cmsContext context, cmsHPROFILE from, cmsUInt32Number fromFormat,
                                           cmsHPROFILE to, cmsUInt32Number toFormat, cmsUInt32Number intent,
                                           cmsUInt32Number flags);
cmsContext __wrap_cmsCreateContext(void *plugin, void *data);
cmsHPROFILE __wrap_cmsOpenProfileFromMemTHR(cmsContext context, const void *bytes, cmsUInt32Number size);
cmsHPROFILE __wrap_cmsCreate_sRGBProfileTHR(cmsContext context);
cmsHPROFILE __wrap_cmsCreateXYZProfileTHR(cmsContext context);
cmsBool __wrap_cmsSaveProfileToMem(cmsHPROFILE profile, void *bytes, cmsUInt32Number *size);
cmsHTRANSFORM __wrap_cmsCreateTransformTHR(cmsContext context, cmsHPROFILE from, cmsUInt32Number fromFormat,
                                           cmsHPROFILE to, cmsUInt32Number toFormat, cmsUInt32Number intent,
                                           cmsUInt32Number flags);

cmsContext __wrap_cmsCreateContext(void *plugin, void *data) {
  return withMemory([=] { return __real_cmsCreateContext(plugin, data); });
}
cmsHPROFILE __wrap_cmsOpenProfileFromMemTHR(cmsContext context, const void *bytes, cmsUInt32Number size) {
  return withMemory([=] { return __real_cmsOpenProfileFromMemTHR(context, bytes, size); });
}
cmsHPROFILE __wrap_cmsCreate_sRGBProfileTHR(cmsContext context) {
  return withMemory([=] { return __real_cmsCreate_sRGBProfileTHR(context); });
}
cmsHPROFILE __wrap_cmsCreateXYZProfileTHR(cmsContext context) {
  return withMemory([=] { return __real_cmsCreateXYZProfileTHR(context); });
}
cmsBool __wrap_cmsSaveProfileToMem(cmsHPROFILE profile, void *bytes, cmsUInt32Number *size) {
  return withMemory([=] { return __real_cmsSaveProfileToMem(profile, bytes, size); });
}
cmsHTRANSFORM __wrap_cmsCreateTransformTHR(cmsContext context, cmsHPROFILE from, cmsUInt32Number fromFormat,
                                           cmsHPROFILE to, cmsUInt32Number toFormat, cmsUInt32Number intent,
                                           cmsUInt32Number flags) {
  return withMemory(
      [=] { return __real_cmsCreateTransformTHR(context, from, fromFormat, to, toFormat, intent, flags); });
}
}

namespace testing_support {

FailingMalloc::FailingMalloc(long failAt) noexcept {
  requestsLeft = failAt;
  hasFailed = false;
}
FailingMalloc::~FailingMalloc() { requestsLeft = 0; }
bool FailingMalloc::failed() const noexcept { return hasFailed; }

}  // namespace testing_support
