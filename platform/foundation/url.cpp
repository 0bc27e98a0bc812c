// File paths and URLs. A path is kept as bytes, since file names need not be valid text.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <optional>

#include "foundation/string_object.h"
#include "foundation/url_object.h"

std::string __CFURL::describe() const { return "<CFURL " + cf::utf8(text->text()) + ">"; }

namespace cf {
namespace {

constexpr std::string_view kUnreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
constexpr std::string_view kPathPunctuation = "!$&'()*+,;=:@/";
constexpr std::string_view kOtherPunctuation = "?#[]";

bool has(std::string_view set, char byte) noexcept { return set.find(byte) != std::string_view::npos; }

int hexDigit(char digit) noexcept {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return digit >= 'a' && digit <= 'f' ? digit - 'a' + 10 : -1;
}

bool isEscape(std::string_view text) noexcept {
  return text.size() >= 3 && text[0] == '%' && hexDigit(text[1]) >= 0 && hexDigit(text[2]) >= 0;
}

bool isURLText(std::string_view text) noexcept {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' ? !isEscape(text.substr(i))
                       : !has(kUnreserved, text[i]) && !has(kPathPunctuation, text[i]) &&
                             !has(kOtherPunctuation, text[i]))
      return false;
  }
  return true;
}

std::string escaped(std::string_view path) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  // In the first component of a relative path a colon would look like the end of a scheme.
  const std::size_t colonsFrom = path.starts_with('/') ? 0 : std::min(path.find('/'), path.size());
  std::string result;
  for (std::size_t i = 0; i < path.size(); ++i) {
    const bool plain =
        has(kUnreserved, path[i]) || (has(kPathPunctuation, path[i]) && (path[i] != ':' || i >= colonsFrom));
    const auto byte = static_cast<unsigned char>(path[i]);
    if (plain)
      result += path[i];
    else
      result.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
  }
  return result;
}

std::string unescaped(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!isEscape(text.substr(i))) {
      result += text[i];
      continue;
    }
    result += static_cast<char>(hexDigit(text[i + 1]) << 4 | hexDigit(text[i + 2]));
    i += 2;
  }
  return result;
}

std::string_view withoutEndSlashes(std::string_view path) noexcept {
  while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
  return path;
}

// The scheme with its colon; empty where there is none.
std::string_view schemeOf(std::string_view text) noexcept {
  const std::size_t colon = text.find(':');
  if (colon == 0 || colon == std::string_view::npos || text.find_first_of("/?#") < colon) return {};
  return text.substr(0, colon + 1);
}

bool equalIgnoringCase(std::string_view a, std::string_view lower) noexcept {
  return std::ranges::equal(a, lower, {},
                            [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
}

// The parts of a URL's text that matter here.
struct Parsed {
  std::string path;
  bool isFile = false;
  bool isRelative = false;
};

Parsed parse(std::string_view text) {
  Parsed result;
  const std::string_view scheme = schemeOf(text);
  result.isRelative = scheme.empty();
  result.isFile = result.isRelative || equalIgnoringCase(scheme, "file:");
  text.remove_prefix(scheme.size());
  if (text.starts_with("//")) {
    text.remove_prefix(2);
    const std::string_view host = text.substr(0, text.find_first_of("/?#"));
    // Another machine's file is none of ours.
    result.isFile =
        result.isFile && !result.isRelative && (host.empty() || equalIgnoringCase(host, "localhost"));
    text.remove_prefix(host.size());
  }
  result.path = unescaped(text.substr(0, text.find_first_of("?#")));
  const bool namesFile = !result.path.empty() && result.path.find('\0') == std::string::npos;
  result.isFile = result.isFile && namesFile;
  return result;
}

CFStringRef newText(CFAllocatorRef allocator, std::string_view bytes) noexcept {
  return CFStringCreateWithBytes(allocator, reinterpret_cast<const UInt8 *>(bytes.data()),
                                 static_cast<CFIndex>(bytes.size()), kCFStringEncodingUTF8, false);
}

Ref<__CFURL> newURL(CFAllocatorRef allocator, std::string_view text, std::string_view path) noexcept {
  auto made = make<__CFURL>(allocator);
  if (!made) return nullptr;
  const CFAllocatorRef own = made->allocator();
  made->text = adopt(newText(own, text));
  made->path = Buffer<char>(own);
  const std::string_view trimmed = withoutEndSlashes(path);
  if (!made->text || !made->path.reserve(trimmed.size() + 1)) return nullptr;
  if (!made->path.append(trimmed.data(), trimmed.size()) || !made->path.append('\0')) return nullptr;
  made->isDirectory = path.ends_with('/');
  return made;
}

Ref<__CFURL> newFileURL(CFAllocatorRef allocator, std::string_view path, bool isDirectory) {
  if (path.empty() || path.find('\0') != std::string_view::npos) return nullptr;
  std::string text = (path.starts_with('/') ? "file://" : "") + escaped(path);
  if (isDirectory && !text.ends_with('/')) text += '/';
  auto made = newURL(allocator, text, path);
  if (!made) return nullptr;
  made->isFile = true;
  made->isDirectory = made->isDirectory || isDirectory;
  return made;
}

// The folder that a text relative to base starts from, with its slash.
std::string folderOf(CFURLRef base) {
  std::string path(base->pathBytes());
  if (base->isDirectory) return path.ends_with('/') ? path : path + '/';
  path.resize(path.rfind('/') + 1);  // nothing where there is no slash
  return path;
}

Ref<__CFURL> newURLFromText(CFAllocatorRef allocator, const std::string &text, CFURLRef base) {
  if (text.empty() || !isURLText(text)) return nullptr;
  const Parsed parsed = parse(text);
  if (base && parsed.isRelative && parsed.isFile) {
    if (!base->isFile) return nullptr;
    const std::string path = parsed.path.starts_with('/') ? parsed.path : folderOf(base) + parsed.path;
    return newFileURL(allocator, path, path.ends_with('/'));
  }
  auto made = newURL(allocator, text, parsed.path);
  if (made) made->isFile = parsed.isFile;
  return made;
}

// The whole text in UTF-8, if it can be written so.
std::optional<std::string> strictUTF8(CFStringRef string) {
  const CFIndex length = CFStringGetLength(string);
  std::string result(
      static_cast<std::size_t>(CFStringGetMaximumSizeForEncoding(length, kCFStringEncodingUTF8)), '\0');
  CFIndex used = 0;
  const CFIndex done =
      CFStringGetBytes(string, CFRangeMake(0, length), kCFStringEncodingUTF8, 0, false,
                       reinterpret_cast<UInt8 *>(result.data()), static_cast<CFIndex>(result.size()), &used);
  if (done != length) return std::nullopt;
  result.resize(static_cast<std::size_t>(used));
  return result;
}

std::string_view lastComponent(std::string_view path) noexcept {
  return path == "/" ? path : path.substr(path.rfind('/') + 1);
}

std::string_view extensionOf(std::string_view path) noexcept {
  const std::string_view name = lastComponent(path);
  const std::size_t dot = name.rfind('.');
  return dot == 0 || dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1);
}

std::string currentFolder() {
  std::array<char, PATH_MAX> path;
  return getcwd(path.data(), path.size()) ? std::string(path.data()) + '/' : std::string();
}

CFStringRef copyPart(CFURLRef url, std::string_view text) noexcept {
  return text.empty() ? nullptr : newText(url->allocator(), text);
}

}  // namespace
}  // namespace cf

using namespace cf;

CFTypeID CFURLGetTypeID(void) { return __CFURL::typeID(); }

CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef path, CFURLPathStyle style,
                                       Boolean isDirectory) {
  if (!path || style != kCFURLPOSIXPathStyle) return nullptr;
  return guarded([&]() -> CFURLRef {
    const auto bytes = strictUTF8(path);
    return bytes ? newFileURL(allocator, *bytes, isDirectory).give() : nullptr;
  });
}

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8 *bytes, CFIndex length,
                                                 Boolean isDirectory) {
  if (!bytes || length < 0) return nullptr;
  const std::string_view path{reinterpret_cast<const char *>(bytes), static_cast<std::size_t>(length)};
  return guarded([&] { return newFileURL(allocator, path, isDirectory).give(); });
}

CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef string, CFURLRef baseURL) {
  if (!string) return nullptr;
  return guarded([&]() -> CFURLRef {
    const auto text = strictUTF8(string);
    return text ? newURLFromText(allocator, *text, baseURL).give() : nullptr;
  });
}

CFStringRef CFURLGetString(CFURLRef url) { return url ? url->text.get() : nullptr; }

CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style) {
  return url && url->isFile && style == kCFURLPOSIXPathStyle ? copyPart(url, url->pathBytes()) : nullptr;
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8 *buffer,
                                         CFIndex bufferSize) {
  if (!url || !url->isFile || !buffer || bufferSize < 1) return false;
  return guarded([&]() -> Boolean {
    const bool resolves = resolveAgainstBase && !url->pathBytes().starts_with('/');
    const std::string whole = (resolves ? currentFolder() : std::string()).append(url->pathBytes());
    if (whole.size() >= static_cast<std::size_t>(bufferSize)) return false;
    std::copy_n(whole.c_str(), whole.size() + 1, reinterpret_cast<char *>(buffer));
    return true;
  });
}

CFStringRef CFURLCopyPathExtension(CFURLRef url) {
  return url ? copyPart(url, extensionOf(url->pathBytes())) : nullptr;
}

CFStringRef CFURLCopyLastPathComponent(CFURLRef url) {
  return url ? copyPart(url, lastComponent(url->pathBytes())) : nullptr;
}

Boolean CFURLHasDirectoryPath(CFURLRef url) { return url && url->isDirectory; }
