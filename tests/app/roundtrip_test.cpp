#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "app/compare_documents.h"

namespace {

using workbench::Art;
using workbench::Document;

// A comparison that can't see a change proves nothing, so each change to a copy must be reported.
struct Change {
    const char* name;
    std::function<void(Document&, Art&)> apply;
};

void PrintTo(const Change& change, std::ostream* out) {
    *out << change.name;
}

class ComparisonTest : public testing::TestWithParam<Change> {
protected:
    static Art& Build(Document& document) {
        Art& group = *document.AppendArt(kArtGroup, document.LayerAt(0).root);
        Art& path = *document.AppendArt(kArtPath, &group);
        for (const HostPoint p : {HostPoint{0, 0}, {50, 0}, {50, 50}})
            path.path()->segments.push_back({p, p, {p.x + 1, p.y}, 1});
        path.path()->style = workbench::DefaultPathStyle();
        HostColor& fill = path.path()->style.fill;
        path.path()->style.fillPaint = 1;
        fill.kind = kColorGradient;
        fill.u.gradient = {document.NewGradient("").handle, {1, 2}, 30, 40, {1, 0, 0, 1, 5, 5}, 0, 0};
        return path;
    }
};

TEST_P(ComparisonTest, ReportsTheChange) {
    Document a, b;
    Build(a);
    Art& changed = Build(b);
    const RecordFrame frame{};
    ASSERT_THAT(CompareDocuments(a, b, frame), testing::IsEmpty());
    GetParam().apply(b, changed);
    EXPECT_THAT(CompareDocuments(a, b, frame), testing::SizeIs(testing::Ge(1U)));
}

HostPathStyle& StyleOf(Art& art) {
    return art.path()->style;
}

INSTANTIATE_TEST_SUITE_P(
    Changes, ComparisonTest,
    testing::Values(
        Change{"anchor by two steps",
               [](Document&, Art& a) { a.path()->segments[1].anchor.x += 4.0 / 65536; }},
        Change{"handle", [](Document&, Art& a) { a.path()->segments[2].out.y -= 0.001; }},
        Change{"anchor count", [](Document&, Art& a) { a.path()->segments.pop_back(); }},
        Change{"closed", [](Document&, Art& a) { a.path()->closed = true; }},
        Change{"opacity", [](Document&, Art& a) { a.blend.opacity = 0.999; }},
        Change{"group opacity", [](Document&, Art& a) { a.parent->blend.opacity = 0.5; }},
        Change{"group clipped", [](Document&, Art& a) { a.parent->group()->clipped = true; }},
        Change{"blending mode", [](Document&, Art& a) { a.blend.mode = 3; }},
        Change{"not filled", [](Document&, Art& a) { StyleOf(a).fillPaint = 0; }},
        Change{"fill kind", [](Document&, Art& a) { StyleOf(a).fill = workbench::GrayColor(0); }},
        Change{"stroke", [](Document&, Art& a) { StyleOf(a).stroke.u.gray.gray = 0.99; }},
        Change{"line width", [](Document&, Art& a) { StyleOf(a).lineWidth += 0.0001; }},
        Change{"join", [](Document&, Art& a) { StyleOf(a).lineJoin = 2; }},
        Change{"dash", [](Document&, Art& a) { StyleOf(a).dash.count = 1; }},
        Change{"gradient origin", [](Document&, Art& a) { StyleOf(a).fill.u.gradient.origin.x += 0.01; }},
        Change{"gradient matrix", [](Document&, Art& a) { StyleOf(a).fill.u.gradient.matrix.b = 0.001; }},
        Change{"stop colour",
               [](Document& d, Art& a) {
                   d.Find(StyleOf(a).fill.u.gradient.gradient)->stops[1].color = workbench::GrayColor(0.5);
               }},
        Change{
            "stop opacity",
            [](Document& d, Art& a) { d.Find(StyleOf(a).fill.u.gradient.gradient)->stops[0].opacity = 0.5; }},
        Change{"tag",
               [](Document&, Art& a) {
                   a.tags.push_back({"n", "string", "v"});
               }},
        Change{"further member", [](Document& d, Art& a) { d.AppendArt(kArtPath, a.parent); }},
        Change{"kind",
               [](Document& d, Art& a) {
                   d.AppendArt(kArtGroup, a.parent);
                   d.DisposeArt(&a);
               }}),
    [](const auto& info) {
        std::string name = info.param.name;
        std::replace(name.begin(), name.end(), ' ', '_');
        return name;
    });

} // namespace
