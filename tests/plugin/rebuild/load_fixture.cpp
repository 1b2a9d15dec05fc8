#include "tests/plugin/rebuild/load_fixture.h"

#include <cmath>

#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"

constexpr char kGroup[] = "\\Folder\\Group";

Fixed Stored(double value) {
    return RealToFixed(static_cast<float>(value));
}

static std::string DescribeMembers(const workbench::Art& art) {
    std::string text;
    for (const workbench::Art* member = art.firstChild; member; member = member->below)
        text += (text.empty() ? "" : " ") + Describe(*member);
    return text;
}

std::string Describe(const workbench::Art& art) {
    switch (art.kind) {
        case kArtPath:
            return "p" + std::to_string(std::lround(art.path()->style.lineWidth));
        case kArtGroup:
            return (art.group()->clipped ? "g!(" : "g(") + DescribeMembers(art) + ")";
        case kArtCompoundPath:
            return "c(" + DescribeMembers(art) + ")";
        default:
            return "x(" + DescribeMembers(art) + ")";
    }
}

std::string DescribeAll(workbench::Document& document, const workbench::Art& art) {
    std::string text;
    for (const workbench::Art* member = art.firstChild; member; member = member->below)
        text += (text.empty() ? "" : " ") + DescribeAll(document, *member);
    if (const workbench::PathData* path = art.path()) {
        text = Describe(art);
        const HostColor& fill = path->style.fill;
        if (path->style.fillPaint && fill.kind == kColorPattern) {
            const workbench::Pattern* pattern = document.Find(fill.u.pattern.pattern);
            text += "[" + (pattern && pattern->art ? DescribeAll(document, *pattern->art) : "lost") + "]";
        }
    } else {
        const std::string whole = Describe(art);
        text = whole.substr(0, whole.find('(') + 1) + text + ")";
    }
    for (const std::string& tag : TagsOf(art)) text += "#" + tag;
    return text;
}

std::vector<std::string> TagsOf(const workbench::Art& art) {
    std::vector<std::string> lines;
    for (const workbench::Tag& tag : art.tags)
        lines.push_back(tag.name + (tag.type == "string" ? "" : ":" + tag.type) + "=" + tag.value);
    return lines;
}

void LoadFixture::SetUp() {
    PluginFixture::SetUp();
    if (HasFatalFailure()) return;
    std::filesystem::create_directory(rootOnDisk() / "Folder");
    NewRecordOf(100, 50);
    globals->placePoint = {0, 0};
    globals->originMode = 2;
}

void LoadFixture::NewRecordOf(double width, double height) {
    FreeHandle(globals->curRecord);
    globals->curRecord = NewRecord();
    ASSERT_NE(globals->curRecord, nullptr);
    auto* header = reinterpret_cast<RecordHeader*>(BlockBytes(globals->curRecord));
    header->boundsTop = Stored(height);
    header->boundsRight = Stored(width);
    stored_ = false;
}

void LoadFixture::Note(const std::string& text) {
    ASSERT_EQ(AddNote(text.c_str()), 0);
}

AidbPathObject* LoadFixture::Path(int id, const std::vector<HostPoint>& anchors) {
    const auto size = static_cast<uint32_t>(kPathBaseBytes + anchors.size() * sizeof(AidbSegment));
    auto* path = reinterpret_cast<AidbPathObject*>(AppendObject(globals->curRecord, kPathObject, size));
    HostPathStyle style = workbench::DefaultPathStyle();
    style.lineWidth = id;
    PathStyleToRecord(style, &path->style);
    path->header.opacity = Stored(1.0);
    path->segmentCount = static_cast<int16_t>(anchors.size());
    auto* segments = reinterpret_cast<AidbSegment*>(path + 1);
    for (size_t i = 0; i < anchors.size(); ++i)
        SegmentToRecord({anchors[i], anchors[i], anchors[i], 1}, &segments[i]);
    return path;
}

AidbPathObject* LoadFixture::PatternPath(int id, uint32_t number) {
    AidbPathObject* path = Path(id);
    path->style.fillFlag = 1;
    path->style.fill.kind = kStoredPattern;
    path->style.fill.u.pattern.number = number;
    return path;
}

void LoadFixture::Store() {
    std::filesystem::remove(rootOnDisk() / "Folder" / "Group.AID");
    ASSERT_EQ(WriteRecord(kGroup, -1), 0);
    NewRecordOf(0, 0);
    stored_ = true;
}

HostError LoadFixture::Load() {
    if (!stored_) Store();
    return AidbLoadArt(kGroup, 0);
}

uint64_t LoadFixture::RefuseEachCall(const std::function<void(HostError)>& check, bool allBehind,
                                     const std::function<void()>& prepare) {
    if (!stored_) Store();
    OpenEmptyDocument();
    prepare();
    const uint64_t before = host().callCount();
    EXPECT_EQ(Load(), kHostNoError);
    const uint64_t calls = host().callCount() - before;
    for (uint64_t n = 1; n <= calls && host().faults().empty(); ++n) {
        SCOPED_TRACE(n);
        OpenEmptyDocument();
        prepare();
        allBehind ? host().RefuseFrom(n) : host().RefuseCall(n);
        const HostError error = Load();
        host().RefuseNone();
        check(error);
        ReleaseSuites(); // the host reports what was never released
        EXPECT_EQ(host().faults(), std::vector<std::string>());
        HoldSuites();
    }
    return calls;
}

std::string LoadFixture::Page() {
    return DescribeMembers(Root());
}

workbench::Art* LoadFixture::AddArt(int32_t kind, workbench::Art* parent) {
    return document().PrependArt(kind, parent ? parent : document().CurrentLayer().root);
}

void LoadFixture::ExpectBeeps(std::optional<unsigned> before, unsigned count) {
    if (before) {
        EXPECT_EQ(*BeepsSoFar() - *before, count);
    }
}
