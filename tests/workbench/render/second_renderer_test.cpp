// Our pictures beside those of another renderer.  Filters and masks are not ours yet, so drawings that
// lose anything on the way in are left out; antialiasing differs, so a share of the pixels may too.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include "workbench/render/cairo_handle.h"
#include "workbench/render/cairo_pixels.h"
#include "workbench/render/page_files.h"
#include "workbench/svg/svg_reader.h"
#include "workbench/svg/svg_writer.h"

namespace workbench {
namespace {

namespace fs = std::filesystem;

constexpr int kSide = 200;

std::vector<std::string> EveryNth(size_t step) {
    std::vector<std::string> all, chosen;
    for (const auto& entry : fs::recursive_directory_iterator("/usr/share/openclipart/svg")) {
        if (entry.path().extension() == ".svg") all.push_back(entry.path().string());
    }
    std::sort(all.begin(), all.end());
    for (size_t i = step / 2; i < all.size(); i += step) chosen.push_back(all[i]);
    return chosen;
}

std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

std::string TemporaryFile(const char* extension) {
    return (fs::temp_directory_path() / ("second-" + std::to_string(getpid()) + extension)).string();
}

/// White paper below it, `width` x `height` pixels; empty if the other renderer refuses the file.
std::vector<uint8_t> OtherPicture(const std::string& file, int width, int height) {
    const std::string png = TemporaryFile(".png");
    const std::string command = "rsvg-convert -l en --background-color=white -w " + std::to_string(width) +
                                " -h " + std::to_string(height) + " -o " + png + " " + Quoted(file) +
                                " 2>/dev/null";
    if (std::system(command.c_str()) != 0) return {};
    const CairoSurface surface(cairo_image_surface_create_from_png(png.c_str()));
    fs::remove(png);
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return {};
    return BytesOfImage(surface.get());
}

double ShareOfVisibleDifferences(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b) {
    size_t visible = 0;
    for (size_t i = 0; i + 3 < a.size(); i += 4) {
        int largest = 0;
        for (size_t channel = 1; channel < 4; ++channel) {
            largest = std::max(largest, std::abs(int{a[i + channel]} - int{b[i + channel]}));
        }
        visible += largest > 64;
    }
    return static_cast<double>(visible) / (static_cast<double>(a.size()) / 4);
}

TEST(SecondRenderer, DrawingsLookTheSame) {
    size_t compared = 0, differing = 0;
    for (const std::string& file : EveryNth(60)) {
        ReadReport report;
        std::string error;
        const auto document = ReadSvgFile(file, &report, &error);
        if (!document || !report.losses.empty()) continue;
        const double scale = kSide / std::max(document->page.right - document->page.left,
                                              document->page.top - document->page.bottom);
        const PagePicture ours = DrawPage(*document, scale, kSide);
        const std::vector<uint8_t> other = OtherPicture(file, ours.width, ours.height);
        if (other.size() != ours.pixels.size()) continue;
        ++compared;
        const double share = ShareOfVisibleDifferences(ours.pixels, other);
        if (share > 0.02) {
            ++differing;
            std::printf("%s: %.1f %% of the pixels\n", file.c_str(), 100 * share);
        }
    }
    // A hundred drawings; hairlines and odd page sizes account for the few that may differ.
    EXPECT_GE(compared, 50U);
    EXPECT_LE(differing, compared / 25) << differing << " of " << compared;
}

// What the reader and the renderer have to understand, a few words of each kind, on a page of 100 x 100.  The
// shapes are large, so that each misunderstanding is seen.
constexpr const char* kSnippets[] = {
    // Structure
    "<rect width='60' height='40'/><rect x='30' y='20' width='60' height='70' fill='#0af'/>",
    "<defs><path id='a' d='M5 5h30v20z'/></defs><use href='#a' x='10' y='20' transform='scale(2)' "
    "fill='red'/>"
    "<use xlink:href='#a'/>",
    "<symbol id='s' viewBox='0 0 10 10'><path d='M0 0L10 10V5z'/></symbol><use xlink:href='#s' x='20' y='30' "
    "width='50' height='50'/>",
    "<svg x='10' y='10' width='60' height='20' viewBox='0 0 10 10'><path d='M0 0h20v10z'/></svg>",
    "<svg width='40' height='40' overflow='visible'><path d='M0 0L99 40V0z'/></svg>",
    "<switch><foreignObject requiredExtensions='urn:x'/><rect systemLanguage='de' width='90' height='30'/>"
    "<path systemLanguage='en' d='M0 0h90v90z'/></switch>",
    "<g display='none'><rect width='90' height='90'/></g><g visibility='hidden'><rect width='90' "
    "height='90'/>"
    "<path visibility='visible' d='M0 0h50v50z'/></g>",
    // Transforms
    "<g transform='translate(50,10) scale(2)'><rect width='20' height='30'/></g>",
    "<g transform='rotate(30, 50, 50) skewX(20),skewY(-10)'><rect x='30' y='30' width='40' height='20'/></g>",
    "<g transform='matrix(1 .5 -.2 1.5 20 5)'><rect width='40' height='30'/></g>",
    "<svg width='90' height='60' viewBox='10 20 30 60' preserveAspectRatio='none'><path d='M10 "
    "20h30v60z'/></svg>",
    "<svg width='90' height='60' viewBox='10 20 30 60'><path d='M10 20h30v60z'/></svg>",
    "<svg width='90' height='60' viewBox='0 0 60 20' preserveAspectRatio='xMinYMax'><path d='M0 "
    "0h60v20z'/></svg>",
    "<svg width='90' height='60' viewBox='0 0 30 60' preserveAspectRatio='xMidYMin slice'><path "
    "d='M0 0h30v60z'/></svg>",
    // Styles
    "<style>.a+path{fill:red}.a~rect{fill:lime}</style><g class='a'/><path d='M0 0h40v40z'/><path "
    "d='M50 0h40v40z'/><rect y='50' width='90' height='40'/>",
    "<defs><style type='text/css'><![CDATA[ .a > path {fill:red} ]]></style></defs><g class='a'><path "
    "d='M0 0h90v90z'/></g><style>path{stroke:blue;stroke-width:9}</style>",
    "<g fill='red' stroke='blue' stroke-width='9' opacity='.5' stroke-linejoin='bevel' "
    "fill-rule='evenodd'><g>"
    "<path d='M10 10H90V90H10z M30 30H70V70H30z'/></g><path d='M0 0h20v20z' stroke='none' "
    "opacity='inherit'/></g>",
    "<g color='blue'><path d='M0 0h50v90z' fill='currentColor'/><path d='M50 0h50v90z' fill='url(#no) "
    "red'/></g>",
    "<path d='M20 30H60L30 80' fill='none' stroke='lime' stroke-width='15' stroke-linecap='square' "
    "stroke-linejoin='round'/>",
    "<path transform='scale(2)' d='M5 10H45' stroke='red' stroke-width='9' stroke-dasharray='8,3 5' "
    "stroke-dashoffset='4'/>",
    "<path d='M20 80L50 30L60 80' fill='none' stroke='red' stroke-width='15' stroke-miterlimit='9'/>",
    "<path d='M20 80L50 30L60 80' fill='none' stroke='red' stroke-width='15' stroke-miterlimit='2'/>",
    "<g font-size='10'><path d='M0 20h90' stroke='red' stroke-width='2em'/><path d='M0 60h90' stroke='red' "
    "stroke-width='20%'/><path d='M0 90h90' stroke='red' stroke-width='0'/></g>",
    "<g><rect width='30' height='30' fill='#0FA'/><rect x='30' width='30' height='30' fill='RGB(300,-5,0)'/>"
    "<rect x='60' width='30' height='30' fill='rgb(100%, 50%, 0%)'/><rect y='30' width='30' height='30' "
    "fill='hsl(120, 100%, 30%)'/><rect x='30' y='30' width='30' height='30' fill='hsl(240deg 100% "
    "25%)'/><rect "
    "x='60' y='30' width='30' height='30' fill='#f008'/><rect y='60' width='30' height='30' "
    "fill='LightGoldenrodYellow'/><rect x='30' y='60' width='30' height='30' fill='rgb(0 255 0 / "
    "25%)'/><rect "
    "x='60' y='60' width='30' height='30' fill='rgb(1,2'/></g>",
    "<path d='M0 10h50' stroke='red' stroke-width='6pt'/><path d='M0 30h50' stroke='red' stroke-width='3mm'/>"
    "<path d='M0 50h50' stroke='red' stroke-width='.4cm'/><path d='M0 70h50' stroke='red' "
    "stroke-width='1pc'/>"
    "<path d='M0 90h50' stroke='red' stroke-width='+1.2e1px'/>",
    // Opacities and blending
    "<path d='M10 10h70v70z' opacity='.8' fill='red' fill-opacity='.5' stroke='blue' stroke-width='20' "
    "stroke-opacity='.25'/>",
    "<path d='M10 10h70v70z' opacity='.8' fill-opacity='.8'/>",
    "<path d='M10 10h70v70z' fill='rgba(0,0,255,.8)' fill-opacity='80%'/>",
    "<path d='M10 10h70v70z' opacity='.5' fill='red' stroke='blue' stroke-width='20'/>",
    "<path d='M10 10h70v70z' fill='red' stroke='blue' stroke-width='20' paint-order='stroke'/>",
    "<g opacity='.5'><rect width='60' height='90' fill='blue'/><rect x='40' width='60' height='90' "
    "fill='red'/></g>",
    "<rect width='90' height='90' fill='yellow'/><rect x='30' width='60' height='60' fill='aqua' "
    "style='mix-blend-mode:multiply'/>",
    "<rect width='90' height='90' fill='#aa6'/><g style='isolation:isolate'><rect x='30' width='60' "
    "height='60' "
    "fill='aqua' style='mix-blend-mode:difference'/></g>",
    // Paths; the even-odd hole
    "<path fill-rule='evenodd' d='M10 10H90V90H10z M30 30H70V70H30z'/>",
    "<path d='M10 10H90V90H10z M30 30H70V70H30z'/>",
    "<path d='M10 10 60 20z l50 70M80 10v80h-50'/>",
    "<path d='M10 50A20 40 30 1 1 60 60Q90 0 90 90T20 90z'/>",
    "<rect x='5' y='5' width='30' height='20%' rx='99' ry='4'/><rect x='40' width='.5in' "
    "height='10pt'/><circle "
    "cx='20' cy='50' r='15'/><ellipse cx='70' cy='50' rx='10' ry='20'/><line x1='5' y1='70' x2='40' y2='90' "
    "stroke='red' stroke-width='5'/><polyline points='50,80 70,75 80 95' fill='lime'/><polygon "
    "points='80 5 95 40 50 30'/>",
    "<path d='M60 10s20 20 20 0s30 0 10 40zM10 50L20 20S50 10 60 60zm55 5q15 0 15 15t15 15-9 9z'/>",
    "<path d='M5 50A1 1 0 0 1 45 50zM50 20A0 5 0 0 1 90 30L60 45zM70 50a20 20 0 0120 20H60z'/>",
    "<path d='\n M 10\t,\r.2e2 L 9E+1 , 40L50+80.5.5.5z'/>",
    // Clips
    "<clipPath id='c'><rect width='50' height='70' clip-rule='evenodd'/></clipPath><g clip-path='url(#c)' "
    "opacity='.5'><path d='M0 0h99v99z'/></g>",
    "<clipPath id='c' transform='translate(5)'><rect width='30' height='30'/></clipPath><path "
    "transform='scale(2)' d='M0 0h99v99z' clip-path='url(#c)'/>",
    "<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='.5' height='1'/></clipPath><g "
    "clip-path='url(#c)' transform='rotate(90)'><rect x='10' y='-90' width='60' height='60'/></g>",
    // Gradients
    "<linearGradient id='g' x1='0' y1='0' x2='1' y2='1'><stop stop-color='red'/><stop offset='1' "
    "stop-color='blue'/></linearGradient><rect y='20' width='99' height='40' fill='url(#g)'/>",
    "<linearGradient id='s'><stop stop-color='red'/><stop offset='1' stop-color='blue'/></linearGradient>"
    "<linearGradient id='h' xlink:href='#s' gradientUnits='userSpaceOnUse' x1='1' x2='30'/><linearGradient "
    "id='g' xlink:href='#h' x1='0' gradientTransform='translate(5,7) rotate(90)'/><g "
    "transform='scale(2)'><rect "
    "width='49' height='49' fill='url(#g)'/></g>",
    "<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='50' cy='40' r='40' fx='60' fy='20'><stop "
    "stop-color='yellow'/><stop offset='1' stop-color='blue'/></radialGradient><rect width='99' height='99' "
    "fill='url(#g)'/>",
    "<radialGradient id='g'><stop stop-color='yellow'/><stop offset='1' "
    "stop-color='blue'/></radialGradient><rect "
    "x='5' y='40' width='90' height='30' fill='url(#g)'/>",
    "<linearGradient id='g'><stop stop-color='yellow'/><stop offset='1' "
    "stop-color='blue'/></linearGradient><path "
    "d='M10 50H90V80' fill='none' stroke-width='20' stroke='url(#g)' stroke-opacity='.5'/>",
    "<linearGradient id='g'><stop offset='-1' stop-color='red'/><stop offset='60%' stop-color='blue'/><stop "
    "offset='.4' stop-color='lime'/><stop offset='9' stop-color='yellow'/></linearGradient><rect width='99' "
    "height='99' fill='url(#g)'/>",
    // Patterns
    "<pattern id='t' patternUnits='userSpaceOnUse' width='10' height='20' "
    "patternTransform='translate(3,4) scale(2) rotate(10)'><path d='M0 0L10 20H0z'/></pattern><rect "
    "width='90' height='90' "
    "fill='url(#t)'/>",
    "<pattern id='t' width='.25' height='.5' viewBox='0 0 1 1' preserveAspectRatio='none'><path d='M0 0L1 "
    "1V0z'/>"
    "</pattern><rect x='10' y='10' width='80' height='60' fill='url(#t)'/>",
    "<pattern id='t' width='.5' height='.5' patternContentUnits='objectBoundingBox'><path d='M0 0L.5 .5V0z'/>"
    "</pattern><rect x='10' y='10' width='80' height='60' fill='url(#t)'/>",
    "<pattern id='t' patternUnits='userSpaceOnUse' width='0' height='5'><path d='M0 0h1'/></pattern><rect "
    "width='90' height='90' fill='url(#t) red'/>",
    // Text
    "<text x='5' y='40' font-family='DejaVu Sans' font-size='36'>Ab<tspan font-weight='bold' "
    "fill='red'>c</tspan><tspan x='5' dy='40' font-style='italic' font-family='DejaVu "
    "Serif'>xyz</tspan></text>",
    "<g font-family='DejaVu Sans' font-size='30'><text x='50' y='30' text-anchor='middle'>mid</text><text "
    "x='95' y='60' text-anchor='end' fill='none' stroke='blue' stroke-width='2'>end</text><text y='95'>"
    "lll<tspan baseline-shift='10'>b</tspan></text></g>",
    "<text x='70' y='5' writing-mode='tb' font-family='IPAGothic' "
    "font-size='24'>\xE7\xB8\xA6\xE3\x80\x82\xE3\x83\xBC"
    "A</text>",
    "<linearGradient id='g'><stop stop-color='red'/><stop offset='1' "
    "stop-color='blue'/></linearGradient><text "
    "transform='rotate(20)' x='15' y='50' font-family='DejaVu Sans' font-size='40' fill='url(#g)' "
    "xml:space='preserve'>M  M</text>",
    // Images
    "<rect width='90' height='30' fill='lime'/><image x='10' y='10' width='60' height='40' opacit"
    "y='.7' href='data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAYAAAAECAYAAACtBE5DAAAAQklEQVR42"
    "hXKUQ0AMAgD0cqZCEQgp3IQgYi56m4fLyFcJSk6aCXGyLky/yKgi4ApQjFhkIM2J8bW9Q9LQC8Bs4T1A+SaMXXWWpX8A"
    "AAAAElFTkSuQmCC'/>",
    "<image x='10' y='10' width='30' height='60' preserveAspectRatio='xMidYMid slice' transform='"
    "rotate(15)' href='data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAYAAAAECAYAAACtBE5DAAAAQklE"
    "QVR42hXKUQ0AMAgD0cqZCEQgp3IQgYi56m4fLyFcJSk6aCXGyLky/yKgi4ApQjFhkIM2J8bW9Q9LQC8Bs4T1A+SaMXXW"
    "WpX8AAAAAElFTkSuQmCC'/>",
};

TEST(SecondRenderer, EachWordMeansTheSame) {
    const std::string file = TemporaryFile(".svg");
    for (const char* snippet : kSnippets) {
        std::ofstream(file) << "<svg xmlns='http://www.w3.org/2000/svg' "
                               "xmlns:xlink='http://www.w3.org/1999/xlink' viewBox='0 0 100 100'>"
                            << snippet << "</svg>";
        ReadReport report;
        std::string error;
        const auto document = ReadSvgFile(file, &report, &error);
        ASSERT_TRUE(document) << snippet << error;
        const PagePicture ours = DrawPage(*document, kSide / 75.0, kSide);
        const std::vector<uint8_t> other = OtherPicture(file, ours.width, ours.height);
        ASSERT_EQ(other.size(), ours.pixels.size()) << snippet;
        EXPECT_GT(ShareOfVisibleDifferences(other, std::vector<uint8_t>(other.size(), 255)), 0.03) << snippet;
        EXPECT_LE(ShareOfVisibleDifferences(ours.pixels, other), 0.01) << snippet;
    }
    fs::remove(file);
}

/// A mesh with curved edges, a plug-in's result and a style's art, with what they were made of below them.
void FillWithOwnArt(Document& document) {
    Art* root = document.LayerAt(0).root;
    const auto addSquare = [&](Art* parent, double left, const HostColor& color) {
        Art* art = document.PrependArt(kArtPath, parent);
        for (const HostPoint p : {HostPoint{left, 5}, {left + 30, 5}, {left + 30, 35}, {left, 35}})
            art->path()->segments.push_back({p, p, p, 1});
        art->path()->style.fillPaint = 1;
        art->path()->style.fill = color;
        return art;
    };
    auto& mesh = std::get<MeshData>(document.PrependArt(kArtMesh, root)->data);
    InitMesh(mesh, kMeshGrid, 2, 1);
    for (size_t i = 0; i < 6; ++i) {
        mesh.vertices[i].position = {10 + 40.0 * static_cast<double>(i / 2), i % 2 ? 90.0 : 50.0};
        mesh.vertices[i].color = ThreeColor(i == 0 || i == 3, i == 1 || i == 4, i > 3);
    }
    StraightenMesh(mesh);
    mesh.edgesI[0] = {{20, 30}, {40, 60}};
    Art* plugin = document.PrependArt(kArtPlugin, root);
    auto& data = std::get<PluginArtData>(plugin->data);
    data.edit = addSquare(plugin, 40, ThreeColor(1, 0, 0))->handle;
    data.result = addSquare(plugin, 10, ThreeColor(0, 0, 1))->handle;
    Art* styled = addSquare(root, 60, ThreeColor(1, 0, 0));
    styled->styledArt = addSquare(nullptr, 65, ThreeColor(0, 0.5, 0))->handle;
}

TEST(SecondRenderer, WhatSvgHasNoWordsForLooksAboutTheSame) {
    Document document;
    document.page = {0, 100, 100, 0};
    FillWithOwnArt(document);
    const std::string file = TemporaryFile(".svg");
    std::ofstream(file) << WriteSvg(document);
    const PagePicture ours = DrawPage(document, kSide / 100.0, kSide);
    const std::vector<uint8_t> other = OtherPicture(file, ours.width, ours.height);
    fs::remove(file);
    ASSERT_EQ(other.size(), ours.pixels.size());
    EXPECT_GT(ShareOfVisibleDifferences(ours.pixels, std::vector<uint8_t>(other.size(), 255)), 0.4);
    EXPECT_LE(ShareOfVisibleDifferences(ours.pixels, other), 0.01);
}

} // namespace
} // namespace workbench
