// Documents that are written and read again must be the same in every field that art can have here.
#include <algorithm>
#include <filesystem>

#include "tests/support/random_document.h"
#include "tests/workbench/svg/svg_helpers.h"
#include "workbench/svg/svg_writer.h"

namespace workbench {
namespace {

ReadFile WriteAndRead(const Document& document) {
    const std::string text = WriteSvg(document);
    ReadFile file = ReadText(text);
    EXPECT_TRUE(file.document) << file.error << "\n" << text.substr(0, 2000);
    if (!file.document) file.document = std::make_unique<Document>();
    file.report.losses.erase("missing image file"); // bytes lie in no folder that links could start from
    EXPECT_THAT(file.report.losses, testing::IsEmpty());
    return file;
}

/// The first line in which two texts differ, with the lines before it.
std::string FirstDifference(const std::string& a, const std::string& b) {
    const size_t at = static_cast<size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
    if (at == a.size() && at == b.size()) return {};
    const size_t from = at > 600 ? at - 600 : 0;
    return a.substr(from, at - from) + ">>>" + a.substr(at, 100) + "\n--- instead of ---\n" +
           b.substr(at, 100);
}

void ExpectSameAgain(const Document& document) {
    const ReadFile file = WriteAndRead(document);
    EXPECT_EQ(FirstDifference(DocumentText(*file.document), DocumentText(document)), "");
}

TEST(RoundTrip, RandomDocumentsComeBackInEveryField) {
    for (unsigned seed = 0; seed < 150; ++seed) {
        Document document;
        FillRandomDocument(document, RandomArt::kAnything, seed);
        ExpectSameAgain(document);
        if (HasFailure()) FAIL() << "seed " << seed;
    }
}

TEST(RoundTrip, PagesOfAnySizeKeepTheNumbersOfTheArt) {
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

// A gradient that another program changed means what that program wrote, not what we had noted.
TEST(RoundTrip, OwnWordsYieldToWhatOthersChanged) {
    Document document;
    Art* art = document.PrependArt(kArtPath, document.LayerAt(0).root);
    for (const HostPoint p : {HostPoint{0, 0}, HostPoint{9, 0}, HostPoint{9, 9}})
        art->path()->segments.push_back({p, {p.x - 1, 1}, p, 0});
    art->path()->style.fillPaint = 1;
    art->path()->style.fill = FourColor(1, 0, 0, 0);
    std::string text = WriteSvg(document);
    ASSERT_NE(text.find("vlq:segments"), std::string::npos);
    const auto replace = [&](const std::string& from, const std::string& to) {
        const size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << text;
        text.replace(at, from.size(), to);
    };
    replace("d=\"M", "d=\"M5 5L");
    replace("fill=\"#00ffff\"", "fill=\"#ff0000\"");
    const ReadFile file = ReadText(text);
    const PathData& path = *OnlyArt(*file.document)->path();
    EXPECT_EQ(path.segments[0].anchor.x, 5);
    EXPECT_EQ(ColorOf(*file.document, path.style.fill), "three 1 0 0");
}

TEST(RoundTrip, WhatHasNoWordsIsCounted) {
    Document document;
    document.PrependArt(kArtPlaced, document.LayerAt(0).root);
    Art* art = document.PrependArt(kArtPath, document.LayerAt(0).root);
    art->path()->segments.push_back({});
    std::map<std::string, int> losses;
    WriteSvg(document, &losses);
    EXPECT_EQ(losses, (std::map<std::string, int>{{"placed file", 1}}));
}

// Drawings that none of us made: all are read, and what we write of them is the same drawing.
TEST(RoundTrip, DrawingsOfManyHands) {
    const std::filesystem::path folder = "/usr/share/openclipart/svg";
    std::vector<std::string> files;
    ASSERT_TRUE(std::filesystem::is_directory(folder)) << "the package openclipart-svg is missing";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file() && entry.path().extension() == ".svg") files.push_back(entry.path());
    std::ranges::sort(files);
    ASSERT_GT(files.size(), 1000u);
    const size_t stride = files.size() / 300;
    for (size_t i = 0; i < files.size(); i += stride) {
        std::string error;
        const auto document = ReadSvgFile(files[i], nullptr, &error);
        ASSERT_TRUE(document) << files[i] << ": " << error;
        const ReadFile again = WriteAndRead(*document);
        ASSERT_EQ(FirstDifference(DocumentText(*again.document), DocumentText(*document)), "") << files[i];
    }
}

} // namespace
} // namespace workbench
