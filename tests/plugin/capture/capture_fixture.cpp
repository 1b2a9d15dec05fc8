#include "tests/plugin/capture/capture_fixture.h"

#include <cstring>

#include "plugin/objects/object_stream.h"

using workbench::Art;

Art& CaptureTest::AddGroup(Art& parent) {
    return *document().AppendArt(kArtGroup, &parent);
}

Art& CaptureTest::AddCompoundPath(Art& parent) {
    return *document().AppendArt(kArtCompoundPath, &parent);
}

Art& CaptureTest::AddPath(Art& parent, const std::vector<HostPoint>& points) {
    Art& path = *document().AppendArt(kArtPath, &parent);
    for (const HostPoint& point : points) path.path()->segments.push_back({point, point, point, 0});
    return path;
}

Art& CaptureTest::FreeGroup() {
    Art& group = *document().AppendArt(kArtGroup, nullptr);
    AddLine(group);
    return group;
}

workbench::Pattern& CaptureTest::AddPattern() {
    workbench::Pattern& pattern = document().NewPattern("pattern");
    pattern.art = &FreeGroup();
    return pattern;
}

HostColor CaptureTest::PaintOf(const workbench::Pattern& pattern) {
    HostColor color{};
    color.kind = kColorPattern;
    color.u.pattern = {};
    color.u.pattern.pattern = pattern.handle;
    color.u.pattern.scale = {1, 1};
    color.u.pattern.matrix = {1, 0, 0, 1, 0, 0};
    return color;
}

HostColor CaptureTest::PaintOf(const workbench::CustomColor& custom, double tint) {
    HostColor color{};
    color.kind = kColorCustom;
    color.u.custom = {custom.handle, tint};
    return color;
}

void CaptureTest::Fill(Art& path, const HostColor& color) {
    path.path()->style.fillPaint = 1;
    path.path()->style.fill = color;
}

void CaptureTest::Stroke(Art& path, const HostColor& color) {
    path.path()->style.strokePaint = 1;
    path.path()->style.stroke = color;
}

void CaptureTest::Capture() {
    EXPECT_EQ(AidbPostArt(), kHostNoError);
    ASSERT_NE(globals->curRecord, nullptr);
    EXPECT_EQ(globals->curRecordNo, -1);
    EXPECT_EQ(globals->sideObjects, nullptr);
    EXPECT_EQ(globals->captureAll, 0);
    EXPECT_EQ(ObjectsOf(globals->curRecord).size(), Header().header.objectCount);
}

void CaptureTest::CaptureAll() {
    document().SelectAll();
    Capture();
}

std::vector<std::vector<uint8_t>> CaptureTest::ObjectsOf(MemoryHandle record) {
    std::vector<std::vector<uint8_t>> objects;
    ObjectWalk walk(record);
    for (auto object = walk.Next(); !object.empty(); object = walk.Next()) {
        objects.emplace_back(object.begin(), object.end());
    }
    EXPECT_FALSE(walk.damaged());
    return objects;
}

Strings CaptureTest::StreamOf(MemoryHandle record) {
    Strings texts;
    for (auto& object : ObjectsOf(record)) {
        const uint32_t type = HeaderOf(object)->type;
        if (type == kNoteObject) {
            texts.emplace_back(NoteText(object));
        } else {
            texts.push_back(type == kPathObject ? "path" : "object " + std::to_string(type));
        }
    }
    return texts;
}

namespace {

std::vector<uint8_t> NthPath(const std::vector<std::vector<uint8_t>>& objects, size_t index) {
    for (auto object : objects) {
        if (HeaderOf(object)->type == kPathObject && index-- == 0) return object;
    }
    ADD_FAILURE() << "no such path in the stream";
    return std::vector<uint8_t>(sizeof(AidbPathObject));
}

} // namespace

AidbPathObject CaptureTest::PathAt(size_t index) {
    AidbPathObject path;
    std::memcpy(&path, NthPath(ObjectsOf(globals->curRecord), index).data(), sizeof path);
    return path;
}

RecordStart CaptureTest::Header() {
    RecordStart start;
    std::memcpy(&start, BlockBytes(globals->curRecord), sizeof start);
    return start;
}
