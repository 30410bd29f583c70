// Plays a Windows metafile with libwmf: a program of its own, because that library was not written
// for files of doubtful origin. It may crash, loop or eat memory here; the caller then has no
// picture, and nothing else happens.
//
// Input: width, height and frame (32 bits each, of this machine), then the metafile. With frame 1
// one unit of its viewport is one pixel; with 0 it has no frame, and the box of what is drawn fills
// the picture. Width or height 0 leaves the size to that box.
// Output: width and height, then the pixels, 0x00RRGGBB of 32 bits each, row by row from the top,
// over white. The exit code is 0 only when they are complete.

#include <libwmf/api.h>
#include <libwmf/gd.h>
#include <libwmf/ipa.h>

#include <algorithm>
#include <cmath>
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
constexpr double fullTurn = 6.283185307179586;

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

// A drawing without a size of its own, in the proportions of its box. Both are 0 for an empty box.
void fitToBox(std::uint32_t (&size)[2], const wmfD_Rect &box)
{
    constexpr float longest = 512;
    const float width = box.BR.x - box.TL.x;
    const float height = box.BR.y - box.TL.y;
    const bool drawn = width >= 0 && height >= 0 && width + height > 0;
    const auto side = [&](float length) {
        const float pixels = std::max(1.0F, length * longest / std::max(width, height));
        return drawn ? static_cast<std::uint32_t>(pixels) : 0;
    };
    size[0] = side(width);
    size[1] = side(height);
}

// WORKAROUND: the library's device draws ellipses, chords and pies without their fills, rectangles
// without their round corners, and only the edge of those whose corners are exchanged. All of them
// are drawn as polygons instead, whose fills and edges are right.

void (*drawPolygon)(wmfAPI *, wmfPolyLine_t *) = nullptr;

struct Polygon
{
    wmfDC *context;
    std::vector<wmfD_Coord> points {};

    void add(double x, double y)
    {
        points.push_back({static_cast<float>(x), static_cast<float>(y)});
    }

    // From one angle to a larger one, both in radians and clockwise on the screen.
    void addArc(double x, double y, double radiusX, double radiusY, double from, double to)
    {
        constexpr double finest = 0.01;
        constexpr double coarsest = 0.06;
        const double radius = std::max({std::abs(radiusX), std::abs(radiusY), 1.0});
        const double step = std::clamp(std::sqrt(1 / radius) / 2, finest, coarsest);
        const double steps = std::ceil((to - from) / step);
        const int count = steps > 0 && steps < 1000 ? static_cast<int>(steps) : 0;
        for (int i = 0; i <= count; ++i) {
            const double angle = from + (to - from) * i / std::max(count, 1);
            add(x + radiusX * std::cos(angle), y + radiusY * std::sin(angle));
        }
    }

    void draw(wmfAPI *api)
    {
        wmfPolyLine_t line {context, points.data(), static_cast<U16>(points.size())};
        drawPolygon(api, &line);
    }
};

void drawEllipse(wmfAPI *api, wmfDrawArc_t *shape)
{
    Polygon polygon {shape->dc};
    polygon.addArc((shape->TL.x + shape->BR.x) / 2, (shape->TL.y + shape->BR.y) / 2,
        (shape->BR.x - shape->TL.x) / 2, (shape->BR.y - shape->TL.y) / 2, 0, fullTurn);
    polygon.draw(api);
}

void drawSegment(wmfAPI *api, wmfDrawArc_t *shape, bool throughCentre)
{
    const double x = (shape->TL.x + shape->BR.x) / 2;
    const double y = (shape->TL.y + shape->BR.y) / 2;
    const double radiusX = std::abs(shape->BR.x - shape->TL.x) / 2;
    const double radiusY = std::abs(shape->BR.y - shape->TL.y) / 2;
    // Start and end are relative to the centre.
    const auto angle = [&](const wmfD_Coord &end) {
        return std::atan2(end.y * radiusX, end.x * radiusY);
    };
    const double from = angle(shape->start);
    double to = angle(shape->end);
    if (to <= from)
        to += fullTurn;
    Polygon polygon {shape->dc};
    polygon.addArc(x, y, radiusX, radiusY, from, to);
    if (throughCentre)
        polygon.add(x, y);
    polygon.draw(api);
}

void drawChord(wmfAPI *api, wmfDrawArc_t *shape)
{
    drawSegment(api, shape, false);
}

void drawPie(wmfAPI *api, wmfDrawArc_t *shape)
{
    drawSegment(api, shape, true);
}

void drawRectangle(wmfAPI *api, wmfDrawRectangle_t *shape)
{
    const auto [left, right] = std::minmax(shape->TL.x, shape->BR.x);
    const auto [top, bottom] = std::minmax(shape->TL.y, shape->BR.y);
    double cornerX = std::min(std::abs(shape->width), right - left) / 2;
    double cornerY = std::min(std::abs(shape->height), bottom - top) / 2;
    if (cornerX == 0 || cornerY == 0)
        cornerX = cornerY = 0;
    Polygon polygon {shape->dc};
    const auto corner = [&](double x, double y, int quarter) {
        if (cornerX > 0)
            polygon.addArc(
                x, y, cornerX, cornerY, quarter * fullTurn / 4, (quarter + 1) * fullTurn / 4);
        else
            polygon.add(x, y);
    };
    corner(right - cornerX, bottom - cornerY, 0);
    corner(left + cornerX, bottom - cornerY, 1);
    corner(left + cornerX, top + cornerY, 2);
    corner(right - cornerX, top + cornerY, 3);
    polygon.draw(api);
}

void fillShapes(wmfAPI *api)
{
    auto *device = static_cast<wmfFunctionReference *>(api->function_reference);
    drawPolygon = device->draw_polygon;
    device->draw_ellipse = drawEllipse;
    device->draw_chord = drawChord;
    device->draw_pie = drawPie;
    device->draw_rectangle = drawRectangle;
}

int play(std::vector<unsigned char> &bytes)
{
    std::uint32_t input[3];
    if (bytes.size() <= sizeof(input))
        return 1;
    std::memcpy(input, bytes.data(), sizeof(input));
    std::uint32_t size[2] {input[0], input[1]};
    const bool framed = input[2] != 0;
    wmfAPI *api = nullptr;
    wmfAPI_Options options {};
    options.function = wmf_gd_function;
    if (wmf_api_create(&api,
            WMF_OPT_FUNCTION | WMF_OPT_IGNORE_NONFATAL | WMF_OPT_NO_ERROR | WMF_OPT_NO_DEBUG,
            &options)
        != wmf_E_None)
        return 1;
    fillShapes(api);
    if (wmf_mem_open(
            api, bytes.data() + sizeof(input), static_cast<long>(bytes.size() - sizeof(input)))
        != wmf_E_None)
        return 1;
    // The scan is what prepares the playing; its box is only that of what is drawn.
    wmfD_Rect drawn {};
    if (wmf_scan(api, 0, &drawn) != wmf_E_None)
        return 1;
    if (size[0] == 0 || size[1] == 0)
        fitToBox(size, drawn);
    if (size[0] == 0 || size[0] > longestSide || size[1] > longestSide)
        return 1;
    wmf_gd_t *data = WMF_GD_GetData(api);
    data->type = wmf_gd_image;
    data->bbox = drawn;
    if (framed) {
        data->bbox.TL = {0, 0};
        data->bbox.BR = {static_cast<float>(size[0]), static_cast<float>(size[1])};
    }
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
