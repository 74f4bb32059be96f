#include "app/pngfile.hpp"

#include <QFile>

#include <csetjmp>
#include <cstdio>
#include <memory>

#include <png.h>

namespace Corvane {

namespace {

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// Calls that fail jump to where the buffer was set, past all destructors: nothing here has any.
bool write(const QImage& pixels, std::FILE* file, png_structp writer, png_infop info) {
    constexpr int quickest = 1;
    if (setjmp(png_jmpbuf(writer)) != 0) return false;
    png_init_io(writer, file);
    png_set_compression_level(writer, quickest);
    png_set_filter(writer, PNG_FILTER_TYPE_BASE, PNG_FILTER_UP);
    png_set_IHDR(writer, info, static_cast<png_uint_32>(pixels.width()),
                 static_cast<png_uint_32>(pixels.height()), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(writer, info);
    for (int y = 0; y < pixels.height(); ++y)
        png_write_row(writer, pixels.constScanLine(y));
    png_write_end(writer, info);
    return std::fflush(file) == 0;
}

}  // namespace

bool writePng(const QImage& image, const QString& path) {
    const QImage pixels = image.convertToFormat(QImage::Format_RGB888);
    const std::unique_ptr<std::FILE, Close> file(std::fopen(QFile::encodeName(path).constData(), "wb"));
    png_structp writer = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = writer ? png_create_info_struct(writer) : nullptr;
    const bool written = file && info && write(pixels, file.get(), writer, info);
    png_destroy_write_struct(&writer, &info);
    return written;
}

}  // namespace Corvane
