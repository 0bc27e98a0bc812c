/* Loads a picture, says what it is, mirrors it top to bottom and writes it as PNG.
 *
 *     cc to_png.c $(pkg-config --cflags --libs dravkit) -o to_png
 *     ./to_png photo.jpg upside_down.png */
#include <DravKit/DravKit.h>
#include <stdio.h>

static DRAVCFImageRef load(const char *name) {
  CFStringRef path = CFStringCreateWithCString(NULL, name, kCFStringEncodingUTF8);
  DRAVCFImageRef image = path ? DRAVCFImageCreateWithPath(NULL, path) : NULL;
  if (path) CFRelease(path);
  return image;
}

static void describe(DRAVCFImageRef image) {
  char text[200];
  CFStringRef description = CFCopyDescription(image);
  if (description && CFStringGetCString(description, text, sizeof text, kCFStringEncodingUTF8)) puts(text);
  if (description) CFRelease(description);
}

static int save(DRAVCFImageRef image, const char *name) {
  CFDataRef png = DRAVCFImageCopyPNGData(NULL, image);
  FILE *file = png ? fopen(name, "wb") : NULL;
  int written = 0;
  if (file) {
    size_t length = (size_t)CFDataGetLength(png);
    written = fwrite(CFDataGetBytePtr(png), 1, length, file) == length;
    written = fclose(file) == 0 && written;
  }
  if (png) CFRelease(png);
  return written;
}

int main(int count, char **arguments) {
  DRAVCFImageRef image;
  int written;
  if (count != 3) {
    fprintf(stderr, "usage: to_png PICTURE PNG\n");
    return 2;
  }
  image = load(arguments[1]);
  if (!image) {
    fprintf(stderr, "%s: no picture that can be read\n", arguments[1]);
    return 1;
  }
  DRAVCFImageFlipVertically(image);
  describe(image);
  written = save(image, arguments[2]);
  CFRelease(image);
  if (!written) fprintf(stderr, "%s: cannot be written\n", arguments[2]);
  return written ? 0 : 1;
}
