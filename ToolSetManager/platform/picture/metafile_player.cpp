// Plays a Windows metafile with libwmf: a program of its own, because that library was not written
// for files of doubtful origin. It may crash, loop or eat memory here; the caller then has no
// picture, and nothing else happens.
//
// Input: width and height in pixels (32 bits each, of this machine), then the metafile, in which
// one unit of the viewport is one pixel; width or height 0 asks for the box of what is drawn.
// Output: width and height, then the pixels, 0x00RRGGBB of 32 bits each, row by row from the top,
// over white. The exit code is 0 only when they are complete.

#include <libwmf/api.h>
#include <libwmf/gd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#ifdef __unix__
#include <sys/resource.h>
#endif

namespace {

constexpr std::size_t mostBytes = 64 << 20;
constexpr unsigned longestSide = 4096;

void limitResources()
{
#ifdef __unix__
    const auto limit = [](auto resource, rlim_t most) {
        const rlimit value {most, most};
        setrlimit(resource, &value);
    };
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0); // it only writes into a pipe
    limit(RLIMIT_CPU, 2); // seconds
    limit(RLIMIT_AS, rlim_t(512) << 20);
#endif
}

bool readAll(std::vector<unsigned char> &bytes)
{
    constexpr std::size_t step = 65536;
    std::size_t size = 0;
    while (size <= mostBytes) {
        bytes.resize(size + step);
        const std::size_t got = std::fread(bytes.data() + size, 1, step, stdin);
        size += got;
        if (got < step) {
            bytes.resize(size);
            return std::ferror(stdin) == 0;
        }
    }
    return false;
}

std::uint32_t side(float length)
{
    // Not a number and negative lengths give 1.
    return length > 1 ? static_cast<std::uint32_t>(std::min(length, 512.0F)) : 1;
}

int play(std::vector<unsigned char> &bytes)
{
    std::uint32_t size[2];
    if (bytes.size() <= sizeof(size))
        return 1;
    std::memcpy(size, bytes.data(), sizeof(size));
    wmfAPI *api = nullptr;
    wmfAPI_Options options {};
    options.function = wmf_gd_function;
    if (wmf_api_create(&api,
            WMF_OPT_FUNCTION | WMF_OPT_IGNORE_NONFATAL | WMF_OPT_NO_ERROR | WMF_OPT_NO_DEBUG,
            &options)
        != wmf_E_None)
        return 1;
    if (wmf_mem_open(
            api, bytes.data() + sizeof(size), static_cast<long>(bytes.size() - sizeof(size)))
        != wmf_E_None)
        return 1;
    // The scan is what prepares the playing; its box is only that of what is drawn.
    wmfD_Rect drawn {};
    if (wmf_scan(api, 0, &drawn) != wmf_E_None)
        return 1;
    wmf_gd_t *data = WMF_GD_GetData(api);
    data->type = wmf_gd_image;
    data->bbox = drawn;
    if (size[0] == 0 || size[1] == 0) {
        size[0] = side(drawn.BR.x - drawn.TL.x);
        size[1] = side(drawn.BR.y - drawn.TL.y);
    } else {
        data->bbox.TL = {0, 0};
        data->bbox.BR = {static_cast<float>(size[0]), static_cast<float>(size[1])};
    }
    if (size[0] > longestSide || size[1] > longestSide)
        return 1;
    data->width = size[0];
    data->height = size[1];
    if (wmf_play(api, 0, &drawn) != wmf_E_None || data->gd_image == nullptr)
        return 1;
    const int *pixels = wmf_gd_image_pixels(data->gd_image);
    const std::size_t count = std::size_t(size[0]) * size[1];
    if (pixels == nullptr || std::fwrite(size, sizeof(size), 1, stdout) != 1
        || std::fwrite(pixels, sizeof(int), count, stdout) != count)
        return 1;
    return std::fflush(stdout) == 0 ? 0 : 1; // what the library holds goes with the process
}

} // namespace

int main()
{
    limitResources();
    std::vector<unsigned char> bytes;
    return readAll(bytes) ? play(bytes) : 1;
}
