// Documents that are written as SVG and read again must be the same in every field: the whole dump is the
// witness.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/support/random_document.h"
#include "workbench/shell/document_json.h"
#include "workbench/svg/svg_reader.h"
#include "workbench/svg/svg_writer.h"

using namespace workbench;

namespace {

/// The dump, and the names of paints, which it leaves out.
nlohmann::json WholeDump(const Document& document) {
    nlohmann::json names = nlohmann::json::array();
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        ForEachArt(*document.LayerAt(i).root, [&](const Art& art) {
            const PathData* path = art.path();
            if (!path || !path->style.fillPaint) return;
            const HostColor& fill = path->style.fill;
            if (fill.kind == kColorGradient) names.push_back(document.Find(fill.u.gradient.gradient)->name);
            if (fill.kind == kColorPattern) names.push_back(document.Find(fill.u.pattern.pattern)->name);
        });
    }
    return {{"document", DocumentJson(document)}, {"names", names}};
}

void ExpectSameAgain(const Document& document) {
    const std::string svg = WriteSvg(document);
    ReadReport report;
    std::string error;
    const auto again = ReadSvg({reinterpret_cast<const uint8_t*>(svg.data()), svg.size()},
                               "some/where/file.svg", &report, &error);
    ASSERT_TRUE(again) << error << "\n" << svg.substr(0, 2000);
    report.losses.erase("missing image file"); // bytes lie in no folder that links could start from
    EXPECT_THAT(report.losses, testing::IsEmpty());
    const nlohmann::json written = WholeDump(document), read = WholeDump(*again);
    if (written != read) ADD_FAILURE() << nlohmann::json::diff(written, read).dump(1).substr(0, 2000);
}

TEST(SvgRoundTrip, RandomDocumentsComeBackInEveryField) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        Document document;
        FillRandomDocument(document, RandomArt::kAnything, seed);
        ExpectSameAgain(document);
        if (HasFailure()) FAIL() << "seed " << seed;
    }
}

TEST(SvgRoundTrip, PagesOfAnySizeKeepTheNumbersOfTheArt) {
    for (const HostRect page :
         {HostRect{0, 792, 612, 0}, HostRect{0, 841.8897637795277, 595.2755905511812, 0},
          HostRect{1.1, 3.3, 2.2, -4.4}}) {
        Document document;
        document.page = page;
        Art* art = document.PrependArt(kArtPath, document.LayerAt(0).root);
        for (const HostPoint p : {HostPoint{0.1, 0.2}, HostPoint{1.0 / 3, 1e-9}, HostPoint{-7e5, 123456.789}})
            art->path()->segments.push_back({p, p, p, 1});
        ExpectSameAgain(document);
    }
}

// Drawings that none of us made: all are read, and what we write of them is the same drawing.
TEST(SvgRoundTrip, DrawingsOfManyHands) {
    const std::filesystem::path folder = "/usr/share/openclipart/svg";
    std::vector<std::string> files;
    ASSERT_TRUE(std::filesystem::is_directory(folder)) << "the package openclipart-svg is missing";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file() && entry.path().extension() == ".svg") files.push_back(entry.path());
    std::ranges::sort(files);
    ASSERT_GT(files.size(), 1000u);
    const size_t stride = files.size() / 120;
    for (size_t i = 0; i < files.size(); i += stride) {
        std::string error;
        const auto document = ReadSvgFile(files[i], nullptr, &error);
        ASSERT_TRUE(document) << files[i] << ": " << error;
        ExpectSameAgain(*document);
        if (HasFailure()) FAIL() << files[i];
    }
}

} // namespace
