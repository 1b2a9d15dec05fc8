#include <zlib.h>

#include <ctime>

#include "tests/workbench/svg/svg_helpers.h"
#include "workbench/svg/svg_limits.h"

namespace workbench {
namespace {

std::string Repeat(const std::string& text, size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (size_t i = 0; i < count; ++i) all += text;
    return all;
}

std::string Packed(const std::string& text) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, 9, Z_DEFLATED, 15 + 16, 9, Z_DEFAULT_STRATEGY), Z_OK);
    std::string packed(deflateBound(&stream, text.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

TEST(Refusals, WhatIsNoSvgIsRefusedWithAReason) {
    for (const std::string& text :
         {std::string(), std::string("hello"), std::string("<html/>"), std::string("<svg>"),
          std::string("<svg><g></svg>"), std::string("\x89PNG\r\n\x1a\n"), std::string(1000, '\0'),
          std::string("<?xml version='1.0' encoding='klingon'?><svg/>"), std::string("<!DOCTYPE svg ["),
          std::string("<!-- "), std::string("\xFF\xFE<"), std::string("\x1F\x8B\x08")}) {
        const ReadFile file = ReadText(text);
        EXPECT_FALSE(file.document) << text;
        EXPECT_FALSE(file.error.empty()) << text;
    }
    std::string error;
    EXPECT_FALSE(ReadSvgFile("/no/such/file.svg", nullptr, &error));
    EXPECT_FALSE(error.empty());
}

TEST(Packed, IsKnownByItsContent) {
    const std::string packed = Packed("<svg><path d='M0 0h1'/></svg>");
    EXPECT_EQ(Structure(*ReadText(packed).document), "g(p)");
    EXPECT_TRUE(ReadText(Packed("<svg><path d='M0 0h1'/>") + Packed("</svg>")).document) << "of two members";
    for (size_t cut = 2; cut + 1 < packed.size(); cut += 3)
        EXPECT_FALSE(ReadText(packed.substr(0, cut)).document) << cut;
}

TEST(Packed, DoesNotGrowBeyondItsBound) {
    const ReadFile file = ReadText(Packed("<svg>" + std::string(kMaxFileBytes, ' ') + "</svg>"));
    EXPECT_FALSE(file.document);
    EXPECT_NE(file.error.find("unpacks to more than"), std::string::npos) << file.error;
}

TEST(Bombs, EntitiesThatGrowAreRefused) {
    std::string text = "<!DOCTYPE svg [<!ENTITY a0 'aaaaaaaaaaaaaaaaaaaa'>";
    for (int i = 1; i < 30; ++i)
        text +=
            "<!ENTITY a" + std::to_string(i) + " '" + Repeat("&a" + std::to_string(i - 1) + ";", 10) + "'>";
    EXPECT_FALSE(ReadText(text + "]><svg><title>&a29;</title></svg>").document);
    EXPECT_FALSE(ReadText(text + "]><svg><title>&a7;</title></svg>").document);
    EXPECT_FALSE(ReadText("<!DOCTYPE svg [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><svg><title>&a;</title></svg>")
                     .document);
    // Wide instead of deep, and without any text.
    EXPECT_FALSE(ReadText("<!DOCTYPE svg [<!ENTITY a '" + std::string(100'000, 'x') + "'>]><svg>" +
                          Repeat("&a;", 1000) + "</svg>")
                     .document);
    EXPECT_FALSE(ReadText("<!DOCTYPE svg [<!ENTITY a ''><!ENTITY b '" + Repeat("&a;", 3000) +
                          "'><!ENTITY c '" + Repeat("&b;", 3000) + "'>]><svg>&c;</svg>")
                     .document);
}

TEST(Bombs, ElementsDeeperThanTheBoundAreCounted) {
    for (const size_t depth : {size_t{1000}, size_t{100'000}}) {
        const ReadFile file = ReadText("<svg>" + Repeat("<g>", depth) + "<path d='M0 0h1'/>" +
                                       Repeat("</g>", depth) + "</svg>");
        ASSERT_TRUE(file.document) << file.error;
        EXPECT_EQ(file.report.losses.count("nesting"), depth > 1000 ? 1u : 0u);
    }
}

TEST(Bombs, UseThatDoublesAndDoublesIsRefused) {
    for (const char* leaf : {"<path d='M0 0h1'/>", ""}) {
        std::string text = std::string("<svg><g id='a0'>") + leaf + "</g>";
        for (int i = 1; i < 40; ++i) {
            const std::string below = "<use href='#a" + std::to_string(i - 1) + "'/>";
            text += "<g id='a" + std::to_string(i) + "'>" + below + below + "</g>";
        }
        const ReadFile file = ReadText(text + "</svg>");
        EXPECT_FALSE(file.document);
        EXPECT_NE(file.error.find("again"), std::string::npos) << file.error;
    }
}

TEST(Bombs, PatternsAndClipsWithinEachOtherAreBounded) {
    std::string text =
        "<svg width='9' height='9'><pattern id='a0' width='1' height='1'><rect width='1' "
        "height='1'/></pattern><clipPath id='c0'><rect width='1' height='1'/></clipPath>";
    for (int i = 1; i < 300; ++i) {
        const std::string below = std::to_string(i - 1), own = std::to_string(i);
        text += "<pattern id='a" + own + "' width='.9' height='1'><rect width='" + own +
                "' height='1' fill='url(#a" + below + ")' stroke='url(#a" + below + ")'/></pattern>";
        text += "<clipPath id='c" + own + "' clip-path='url(#c" + below +
                ")'><rect width='1' height='1'/></clipPath>";
    }
    const ReadFile file =
        ReadText(text + "<rect width='9' height='9' fill='url(#a299)' clip-path='url(#c299)'/></svg>");
    ASSERT_TRUE(file.document) << file.error;
    EXPECT_GT(file.report.losses.count("reference"), 0u);
}

TEST(Bombs, AnchorsInManyCopiesAreRefused) {
    const ReadFile file = ReadText("<svg><path id='p' d='M0 0" + Repeat("l1 1", 200'000) + "'/>" +
                                   Repeat("<use href='#p'/>", 60) + "</svg>");
    EXPECT_FALSE(file.document);
    EXPECT_NE(file.error.find("anchors"), std::string::npos) << file.error;
}

TEST(Bombs, TangledStyleSheetsAreGivenUp) {
    const std::clock_t begin = std::clock();
    const std::string deep = Repeat("<g>", 900), close = Repeat("</g>", 900);
    const ReadFile tangled =
        ReadText("<svg><style>" + Repeat("g ", 28) + "rect path{fill:red}</style>" + deep +
                 "<rect width='1' height='1'/><path d='M0 0h1'/>" + close + "</svg>");
    ASSERT_TRUE(tangled.document);
    const ReadFile many = ReadText("<svg><style>" + Repeat("*,", 20'000) + "*{" + Repeat("fill:red;", 2000) +
                                   "}</style>" + Repeat("<path d='M0 0h1'/>", 1000) + "</svg>");
    ASSERT_TRUE(many.document);
    EXPECT_EQ(many.report.losses.count("style sheet"), 1u);
    // A match that tried every way would not end in a lifetime.
    EXPECT_LT((std::clock() - begin) / CLOCKS_PER_SEC, 60);
}

TEST(Numbers, BeyondAllMeasureLeaveTheShapeOutAndAreCounted) {
    const ReadFile file = ReadBody(
        "<g transform='scale(1e38)'><g transform='scale(1e38)'><g transform='scale(1e38) translate(1e38)'><g "
        "transform='scale(1e38)'><g transform='scale(1e38)'>"
        "<g transform='scale(1e38)'><g transform='scale(1e38)'><g transform='scale(1e38)'><g "
        "transform='scale(1e38)'><path d='M1e99 1L2 2'/><rect width='5' "
        "height='5'/></g></g></g></g></g></g></g></g></g>"
        "<path d='M0 0L1e999 -1e999'/><circle r='1e999' cx='nan'/><rect width='inf' height='1'/><path d='M0 "
        "0A1e300 1e-300 1e300 1 1 1e300 1'/>");
    EXPECT_EQ(file.report.losses.at("number out of range"), 2);
    EXPECT_EQ(Structure(*file.document), "g(p,p,p)");
    const ReadFile page = ReadText(
        "<svg width='1e999' height='1e-999' viewBox='0 0 1e-300 1e300'><path d='M0 0L1 1'/><rect "
        "width='100%' height='100%' fill='url(#g)'/>"
        "<linearGradient id='g' gradientTransform='scale(1e-300)'><stop/><stop/></linearGradient></svg>");
    EXPECT_TRUE(page.document);
}

} // namespace
} // namespace workbench
