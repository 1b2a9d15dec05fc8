/// Painting the record list with 100 cells in sight, as a window's repaint does, every record read from the
/// store.
///
/// A repaint reads every record from the store and finds most pictures scaled already; the first paint of
/// cells, after scrolling, unpacks and scales each: that one's share is `first_share`.
///
/// `share_of_png` is the time of a repaint in the middle of a group of 10,000 records divided by the time
/// that libpng takes to read and decode the same 100 pictures from PNG files of 128 by 128 pixels;
/// `middle_over_start` is that repaint's time over one at the group's start.
#include <benchmark/benchmark.h>
#include <png.h>
#include <windows.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/paint_records.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/store_names.h"
#include "win32/headless/headless_display.h"
#include "win32/path_names.h"

namespace {

constexpr int kPictures = 100;
constexpr int kCopies = 100; ///< of each picture in the group
constexpr int kSide = 128;
constexpr int kLines = 10; ///< of ten cells

/// A drawing such as previews show: shapes with plain and shaded fills on white, each with an outline.
void DrawPicture(int number, uint8_t* preview) {
    std::memset(preview, 0xFF, kPreviewBytes);
    for (int shape = 0; shape < 5; ++shape) {
        const int seed = number * 31 + shape * 17;
        const double x = 20 + seed * 37 % 88, y = 20 + seed * 53 % 88, radius = 8 + seed * 29 % 34;
        const int color[3] = {seed * 71 % 256, seed * 97 % 256, seed * 43 % 256};
        const bool shaded = seed % 3 == 0;
        for (int row = 0; row < kSide; ++row) {
            for (int column = 0; column < kSide; ++column) {
                const double distance = std::hypot(column - x, row - y);
                if (distance > radius) continue;
                uint8_t* pixel = preview + (row * kSide + column) * 4;
                for (int i = 0; i < 3; ++i) {
                    const double shade = shaded ? 1 - distance / radius / 2 : 1;
                    pixel[i + 1] = distance > radius - 1.5 ? 0 : static_cast<uint8_t>(color[i] * shade);
                }
            }
        }
    }
}

void WritePng(const std::string& path, const uint8_t* preview) {
    std::vector<uint8_t> pixels;
    for (uint32_t at = 0; at < kPreviewBytes; at += 4) {
        pixels.insert(pixels.end(), preview + at + 1, preview + at + 4);
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = kSide;
    image.height = kSide;
    image.format = PNG_FORMAT_RGB;
    if (!png_image_write_to_file(&image, path.c_str(), 0, pixels.data(), 0, nullptr)) std::abort();
}

void ReadPng(const std::string& path, std::vector<uint8_t>& pixels) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) std::abort();
    image.format = PNG_FORMAT_RGB;
    pixels.resize(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr)) std::abort();
    benchmark::DoNotOptimize(pixels.data());
}

/// A window that has the record list and its scroll bar, painted as the panel does.
LRESULT CALLBACK PaintProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_DRAWITEM) return DefWindowProcA(window, message, wParam, lParam);
    const auto* item = reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
    PaintRecordList(item->hDC, item->hwndItem);
    return TRUE;
}

class Browser {
public:
    Browser() : display_(640, 480) {
        char name[] = "/tmp/bench-panel-XXXXXX";
        folder_ = mkdtemp(name);
        globals = block_.get();
        globals->swapBytes = 1;
        globals->toolMode = 1;
        globals->curRecordNo = -1;
        std::strcpy(globals->aidbfpath, StorePathOfUtf8(folder_).path.c_str());
        MakeGroup();
        SelectGroup("Pictures");
        MakeWindows();
    }

    ~Browser() {
        DestroyWindow(panel_);
        UnregisterClassA("Browser", nullptr);
        FreeListTable();
        FreeHandle(globals->curRecord);
        FreeHandle(globals->rihList);
        FreeHandle(globals->thumbnails);
        FreeOffsets();
        globals = nullptr;
        std::filesystem::remove_all(folder_);
    }

    void ScrollTo(int line) {
        SCROLLINFO state{};
        state.cbSize = sizeof state;
        state.fMask = SIF_RANGE | SIF_POS;
        state.nMax = kPictures * kCopies / kLines;
        state.nPos = line;
        SetScrollInfo(GetDlgItem(panel_, kRecordScroll), SB_CTL, &state, FALSE);
    }

    void Repaint() {
        InvalidateRect(list_, nullptr, FALSE);
        UpdateWindow(list_);
    }

    void RepaintForTheFirstTime() {
        FreeHandle(globals->thumbnails);
        Repaint();
    }

    void DecodePngs() {
        for (const std::string& path : pngs_) ReadPng(path, pixels_);
    }

private:
    void MakeGroup() {
        for (int number = 0; number < kPictures; ++number) {
            globals->curRecord = NewRecord();
            uint8_t* record = BlockBytes(globals->curRecord);
            auto* header = reinterpret_cast<RecordHeader*>(record);
            std::snprintf(header->name, sizeof header->name, "picture");
            DrawPicture(number, record + kPreviewOffset);
            pngs_.push_back(folder_ + "/" + std::to_string(number) + ".png");
            WritePng(pngs_.back(), record + kPreviewOffset);
            if (WriteRecord("Pictures", -1) != 0) std::abort();
            FreeHandle(globals->curRecord);
        }
        const std::string path = folder_ + "/Pictures.AID";
        std::ifstream in(path, std::ios::binary);
        const std::string once{std::istreambuf_iterator<char>(in), {}};
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out.write("\0\0\x27\x10", 4); // 10,000
        for (int copy = 0; copy < kCopies; ++copy) {
            out.write(once.data() + 4, static_cast<std::streamsize>(once.size() - 4));
        }
        FreeHandle(globals->rihList);
    }

    void MakeWindows() {
        WNDCLASSA windowClass{};
        windowClass.lpfnWndProc = PaintProcedure;
        windowClass.lpszClassName = "Browser";
        RegisterClassA(&windowClass);
        panel_ = CreateWindowExA(0, "Browser", "", WS_POPUP | WS_VISIBLE, 0, 0, 400, 400, nullptr, nullptr,
                                 nullptr, nullptr);
        const auto id = [](int number) { return reinterpret_cast<HMENU>(static_cast<intptr_t>(number)); };
        list_ =
            CreateWindowExA(0, "STATIC", "", WS_CHILD | WS_VISIBLE | SS_OWNERDRAW, 0, 0, kLines * kSmallCell,
                            kLines * kSmallCell, panel_, id(kRecordList), nullptr, nullptr);
        CreateWindowExA(0, "SCROLLBAR", "", WS_CHILD | SBS_VERT, 340, 0, 20, 330, panel_, id(kRecordScroll),
                        nullptr, nullptr);
        for (int row = 0; row < kPictures * kCopies; ++row) AddListRow(list_, "");
    }

    HeadlessDisplay display_;
    std::unique_ptr<Globals> block_ = std::make_unique<Globals>();
    std::string folder_;
    std::vector<std::string> pngs_;
    std::vector<uint8_t> pixels_;
    HWND panel_ = nullptr, list_ = nullptr;
};

/// Processor time, which other programs on a busy machine disturb less than they do the clock; the best of
/// several.
template <typename Work>
double BestSeconds(Work work) {
    double best = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 15; ++i) {
        const std::clock_t start = std::clock();
        work();
        best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return best;
}

void RepaintHundredCells(benchmark::State& state) {
    Browser browser;
    double start = 0, middle = 0, first = 0, png = 0;
    for (auto _ : state) {
        browser.ScrollTo(0);
        start = BestSeconds([&] { browser.Repaint(); });
        browser.ScrollTo(500);
        middle = BestSeconds([&] { browser.Repaint(); });
        first = BestSeconds([&] { browser.RepaintForTheFirstTime(); });
        png = BestSeconds([&] { browser.DecodePngs(); });
    }
    state.counters["start_ms"] = start * 1000;
    state.counters["middle_ms"] = middle * 1000;
    state.counters["first_ms"] = first * 1000;
    state.counters["first_share"] = first / png;
    state.counters["png_ms"] = png * 1000;
    state.counters["share_of_png"] = middle / png;
    state.counters["middle_over_start"] = middle / start;
}
BENCHMARK(RepaintHundredCells)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
