// Our pictures beside those of another renderer.  Filters, masks and text are not ours yet, so drawings that
// lose anything on the way in are left out; antialiasing differs, so a share of the pixels may too.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "workbench/render/cairo_handle.h"
#include "workbench/render/cairo_pixels.h"
#include "workbench/render/page_files.h"
#include "workbench/svg/svg_reader.h"

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

/// White paper below it, `width` x `height` pixels; empty if the other renderer refuses the file.
std::vector<uint8_t> OtherPicture(const std::string& file, int width, int height) {
    const std::string png =
        (fs::temp_directory_path() / ("second-" + std::to_string(getpid()) + ".png")).string();
    const std::string command = "rsvg-convert --background-color=white -w " + std::to_string(width) + " -h " +
                                std::to_string(height) + " -o " + png + " " + Quoted(file) + " 2>/dev/null";
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

} // namespace
} // namespace workbench
