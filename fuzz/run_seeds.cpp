// Runs a fuzzer's function over every file of the folders given, so that seeds are ordinary tests.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size);

namespace {

void runFile(const std::filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
  std::vector<uint8_t> bytes(content.begin(), content.end());  // its own block: reading past the end shows
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

// How many files were run.
int runFolder(const std::filesystem::path &folder) {
  int count = 0;
  std::error_code error;
  for (const auto &entry : std::filesystem::directory_iterator(folder, error)) {
    if (!entry.is_regular_file()) continue;
    runFile(entry.path());
    ++count;
  }
  return count;
}

}  // namespace

int main(int argc, char **argv) {
  for (int i = 1; i < argc; ++i) {
    const int count = runFolder(argv[i]);
    std::printf("%s: %d files\n", argv[i], count);
    if (count == 0) return 1;
  }
  return argc > 1 ? 0 : 2;
}
