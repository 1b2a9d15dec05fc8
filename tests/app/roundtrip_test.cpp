#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <nlohmann/json.hpp>

#include "app/compare_documents.h"
#include "tests/app/run_command.h"
#include "tests/support/temporary_folder.h"

namespace {

using nlohmann::json;
using workbench::Art;
using workbench::Document;

class RoundtripTest : public testing::Test {
protected:
    RoundtripTest() { setenv("XDG_DATA_HOME", (folder.path() / "data").c_str(), 1); }

    json Roundtrip(const std::string& content) {
        const std::string file = (folder.path() / "in.svg").string();
        WriteText(file,
                  "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"100pt\" height=\"100pt\" "
                  "viewBox=\"0 0 100 100\">" +
                      content + "</svg>");
        const CommandResult result = RunCommand({"roundtrip", file, "--json"});
        const json trip = json::parse(result.out)["files"][0];
        EXPECT_EQ(result.code, trip["result"] == "same" || trip["result"] == "loss" ? 0 : 1) << result.err;
        return trip;
    }

    TemporaryFolder folder;
};

TEST_F(RoundtripTest, PathsGroupsClipsAndPatternsComeBackTheSame) {
    const json trip = Roundtrip(R"svg(
        <defs>
          <clipPath id="c"><circle cx="50" cy="50" r="30"/></clipPath>
          <pattern id="p" width="10" height="10" patternUnits="userSpaceOnUse"><rect width="5" height="5"/></pattern>
          <linearGradient id="g" gradientUnits="userSpaceOnUse" x1="0" y1="0" x2="50" y2="20"
              gradientTransform="rotate(20) scale(1.5 0.7)"><stop stop-color="red"/><stop offset="0.3"/>
              <stop offset="1" stop-color="#0f8"/></linearGradient>
        </defs>
        <g opacity="0.5"><path d="M10 10C20 0 40 0 50 10S80 30 90 10Z M20 5h5v5h-5z" fill="url(#g)"
            fill-rule="evenodd"/></g>
        <g clip-path="url(#c)"><rect width="80" height="90" fill="url(#p)"/><circle cx="40" cy="40" r="9"
            fill-opacity="0.25"/></g>
        <path d="M5 5L90 95" fill="none" stroke="#123456" stroke-width="3.7" stroke-dasharray="3 1 2"
            stroke-linecap="round" stroke-linejoin="bevel"/>)svg");
    EXPECT_EQ(trip["result"], "same") << trip.dump(1);
}

TEST_F(RoundtripTest, WhatARecordCannotKeepIsCounted) {
    const json trip = Roundtrip(R"svg(
        <defs><linearGradient id="g"><stop stop-color="red" stop-opacity="0.5"/><stop offset="1" stop-opacity="0.2"/>
        </linearGradient></defs>
        <rect x="10" y="10" width="50" height="50" fill="url(#g)"/>
        <rect x="10" y="10" width="50" height="50" fill="none" stroke="url(#g)" stroke-width="5"/>)svg");
    EXPECT_EQ(trip["result"], "loss") << trip.dump(1);
    EXPECT_EQ(trip["losses"]["stop opacity"], 2);
    EXPECT_EQ(trip["losses"]["gradient on a stroke"], 1);
}

TEST_F(RoundtripTest, AFileThatIsNoDrawingIsRefused) {
    const std::string file = (folder.path() / "no.svg").string();
    WriteText(file, "no drawing");
    const CommandResult result = RunCommand({"roundtrip", file, "--json"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(json::parse(result.out)["files"][0]["result"], "refused");
}

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
