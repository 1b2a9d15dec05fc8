/// Documents for capture tests, and captured streams in a form that a test can compare.
#pragma once

#include <gmock/gmock.h>

#include <span>
#include <string>
#include <vector>

#include "plugin/capture/post_art.h"
#include "plugin/objects/object_layout.h"
#include "plugin/store/record_layout.h"
#include "tests/support/plugin_fixture.h"

using Strings = std::vector<std::string>;

class CaptureTest : public PluginFixture {
protected:
    // Documents.  New art goes below what is in its parent already.
    workbench::Art& root() { return *document().LayerAt(0).root; }
    workbench::Art& AddGroup(workbench::Art& parent);
    workbench::Art& AddCompoundPath(workbench::Art& parent);

    /// An open path of straight pieces.
    workbench::Art& AddPath(workbench::Art& parent, const std::vector<HostPoint>& points);
    workbench::Art& AddLine(workbench::Art& parent) { return AddPath(parent, {{10, 20}, {110, 70}}); }

    /// A group out of the tree with one line in it, as the art of patterns, styles and plug-ins is.
    workbench::Art& FreeGroup();
    workbench::Pattern& AddPattern();
    static HostColor PaintOf(const workbench::Pattern& pattern);
    static HostColor PaintOf(const workbench::CustomColor& color, double tint = 0);
    static void Fill(workbench::Art& path, const HostColor& color);
    static void Stroke(workbench::Art& path, const HostColor& color);

    /// Captures what is selected and checks that the stream is sound and the walk left nothing behind.
    void Capture();
    void CaptureAll();

    // Streams.
    /// A note's text, else the object's kind: "path", "object 9".
    static Strings StreamOf(MemoryHandle record);
    static Strings Stream() { return StreamOf(globals->curRecord); }

    /// The n-th path object of the stream; fails the test and gives an empty one if there is none.
    static AidbPathObject PathAt(size_t index);
    static std::vector<std::vector<uint8_t>> ObjectsOf(MemoryHandle record);
    static RecordStart Header();
};

constexpr Fixed Fix(double value) {
    return static_cast<Fixed>(value * 65536);
}
