#include "Bench.h"

#include <filesystem>

namespace {

double Kilobytes(const char* path) {
    return static_cast<double>(std::filesystem::file_size(path)) / 1000;
}

const bench::Area sizeArea("size", [] {
    const double wide = Kilobytes(KTOOLS_BUILDS "/x86_64/kTools.exe");
    bench::Row("kTools.exe", "64-bit", wide, "kB");
    bench::Row("kTools.exe", "32-bit", Kilobytes(KTOOLS_BUILDS "/i686/kTools.exe"), "kB", {wide, "64-bit"});
});

} // namespace
