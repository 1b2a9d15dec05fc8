#include <cmath>

#include "tests/workbench/suites/suites_fixture.h"

namespace workbench {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using StrictnessTest = SuitesFixture;

TEST_F(StrictnessTest, EverySuppliedSuiteIsFoundByNameAndVersionAlone) {
    ASSERT_THAT(SuppliedSuites(), SizeIs(134));
    for (const auto& [name, version] : SuppliedSuites()) {
        const void* table = nullptr;
        EXPECT_EQ(host_.basic()->AcquireSuite(name, version + 1, &table), kHostSuiteNotFound) << name;
        EXPECT_EQ(table, nullptr);
        EXPECT_EQ(host_.basic()->AcquireSuite(name, version, &table), kHostNoError) << name;
        EXPECT_NE(table, nullptr);
        EXPECT_EQ(host_.UsesOf(name), 1);
        EXPECT_EQ(host_.basic()->ReleaseSuite(name, version), kHostNoError);
    }
    const void* table = nullptr;
    EXPECT_EQ(host_.basic()->AcquireSuite("AI Tea Suite", 1, &table), kHostSuiteNotFound);
    EXPECT_EQ(host_.Uses(), 0);
}

TEST_F(StrictnessTest, UsesAreBalanced) {
    EXPECT_EQ(host_.basic()->ReleaseSuite("AI Art Suite", 17), kHostBadParameter);
    EXPECT_THAT(TakeFaults(), ElementsAre(HasSubstr("AI Art Suite version 17")));
    const void* table = nullptr;
    {
        const Host::Message message;
        host_.basic()->AcquireSuite("AI Tag Suite", 4, &table);
        { const Host::Message nested; }
        EXPECT_THAT(host_.faults(), IsEmpty()) << "held by the outer message";
    }
    EXPECT_THAT(TakeFaults(), ElementsAre(HasSubstr("AI Tag Suite: uses changed by 1")));
    host_.CheckBalance();
    EXPECT_THAT(TakeFaults(), ElementsAre(HasSubstr("AI Tag Suite: 1 uses not given back")));
    host_.basic()->ReleaseSuite("AI Tag Suite", 4);
}

TEST_F(StrictnessTest, SuitesWorkOnlyWhileTheyAreAcquired) {
    Art* path = NewPath();
    int32_t kind = -1;
    const AIArtSuite& art = ArtSuite();
    ReleaseAll();
    EXPECT_EQ(art.GetArtKind(path->handle, &kind), kHostSuiteNotFound);
    EXPECT_THAT(TakeFaults(), ElementsAre(AllOf(HasSubstr("call 1: AI Art Suite GetArtKind"),
                                                HasSubstr("no suite is acquired"))));
    PathSuite();
    EXPECT_EQ(art.GetArtKind(path->handle, &kind), kHostSuiteNotFound);
    EXPECT_THAT(TakeFaults(), ElementsAre(HasSubstr("the suite isn't acquired")));
    EXPECT_EQ(kind, -1);

    // Operations without an error result have no way to say so, but do nothing.
    const auto& math = Use<AIRealMathSuite>("AI Real Math Suite", 3);
    ReleaseAll();
    HostMatrix matrix{9, 9, 9, 9, 9, 9};
    math.SetScaleMatrix(&matrix, 1, 1);
    EXPECT_EQ(matrix.a, 9);
    EXPECT_THAT(TakeFaults(), SizeIs(1));
}

TEST_F(StrictnessTest, BadHandlesAreFaults) {
    const AIArtSuite& art = ArtSuite();
    const auto& gradient = document().NewGradient("");
    const ArtHandle stale = NewPath()->handle;
    document().DisposeArt(document().Find(stale));
    int32_t kind = -1;
    for (const auto handle : {stale, reinterpret_cast<ArtHandle>(gradient.handle), ArtHandle{nullptr},
                              reinterpret_cast<ArtHandle>(uintptr_t{7})}) {
        EXPECT_EQ(art.GetArtKind(handle, &kind), kHostBadHandle);
        EXPECT_THAT(TakeFaults(), ElementsAre(HasSubstr("AI Art Suite GetArtKind")));
    }
    EXPECT_EQ(kind, -1);

    // So are the handles of a document that was closed.
    const ArtHandle old = document().CurrentLayer().root->handle;
    host_.Open(std::make_unique<Document>());
    EXPECT_EQ(art.GetArtKind(old, &kind), kHostBadHandle);
    EXPECT_THAT(TakeFaults(), SizeIs(1));
}

TEST_F(StrictnessTest, ArtOfAnotherKindIsAFault) {
    const auto& group = Use<AIGroupSuite>("AI Group Suite", 5);
    const AIPathSuite& path = PathSuite();
    Art* made = NewPath();
    int32_t value = -1;
    EXPECT_EQ(group.GetGroupClipped(made->handle, &value), kHostBadArt);
    EXPECT_EQ(path.GetPathClosed(document().CurrentLayer().root->handle, &value), kHostBadArt);
    EXPECT_THAT(TakeFaults(), ElementsAre(HasSubstr("art of kind 2"), HasSubstr("art of kind 1")));
    EXPECT_EQ(value, -1);
}

TEST_F(StrictnessTest, MissingPointersAreFaults) {
    const AIArtSuite& art = ArtSuite();
    const AIPathSuite& path = PathSuite();
    Art* made = NewPath();
    EXPECT_EQ(art.GetArtKind(made->handle, nullptr), kHostBadParameter);
    EXPECT_EQ(path.SetPathSegments(made->handle, 0, 1, nullptr), kHostBadParameter);
    EXPECT_EQ(host_.basic()->AllocateBlock(8, nullptr), kHostBadParameter);
    EXPECT_EQ(host_.basic()->AcquireSuite(nullptr, 1, nullptr), kHostBadParameter);
    EXPECT_THAT(TakeFaults(), SizeIs(4));
}

TEST_F(StrictnessTest, PaintThatNamesNothingIsAFaultUnlessItIsNotShown) {
    const auto& styles = Use<AIPathStyleSuite>("AI Path Style Suite", 13);
    const ArtHandle path = NewPath()->handle;
    HostPathStyle style = DefaultPathStyle();
    style.fill.kind = kColorPattern;
    style.fill.u.pattern.pattern = reinterpret_cast<PatternHandle>(uintptr_t{7});
    EXPECT_EQ(styles.SetPathStyle(path, &style), kHostNoError) << "the fill isn't painted";
    HostPathStyle back{};
    EXPECT_EQ(styles.GetPathStyle(path, &back), kHostNoError);
    EXPECT_EQ(back.fill.kind, kColorGray);
    style.fillPaint = 1;
    style.lineWidth = 5;
    EXPECT_EQ(styles.SetPathStyle(path, &style), kHostBadHandle);
    EXPECT_THAT(TakeFaults(), SizeIs(1));
    EXPECT_EQ(styles.GetPathStyle(path, &back), kHostNoError);
    EXPECT_EQ(back.lineWidth, 1) << "nothing of a refused style is taken";
}

TEST_F(StrictnessTest, WhatIsNotDisposedOfIsReportedAtTheLastRelease) {
    const AIUnicodeStringSuite& texts = TextSuite();
    const auto& paths = Use<AIFilePathSuite>("AI File Path Suite", 5);
    const auto& drawing = Use<AIDrawArtSuite>("AI Draw Art Suite", 11);
    UnicodeStringHandle text = nullptr, kept = nullptr;
    FilePathHandle path = nullptr;
    PortHandle port = nullptr;
    EXPECT_EQ(texts.NewEmpty(&kept), kHostNoError);
    EXPECT_EQ(texts.NewEmpty(&text), kHostNoError);
    EXPECT_EQ(paths.New(text, &path), kHostNoError);
    EXPECT_EQ(drawing.NewOffscreenPort(4, 4, &port), kHostNoError);
    EXPECT_EQ(texts.Dispose(text), kHostNoError);
    EXPECT_EQ(texts.Dispose(text), kHostBadHandle);
    EXPECT_THAT(TakeFaults(), ElementsAre(HasSubstr("Dispose")));
    ReleaseAll();
    EXPECT_THAT(TakeFaults(), ElementsAre(HasSubstr("Unicode string of call 1 "),
                                          HasSubstr("file path of call 3 "), HasSubstr("port of call 4 ")));
}

TEST_F(StrictnessTest, BlocksAreZeroedCountedAndFreedOnce) {
    void* block = nullptr;
    ASSERT_EQ(host_.basic()->AllocateBlock(100, &block), kHostNoError);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(static_cast<char*>(block)[i], 0);
    host_.CheckBalance();
    EXPECT_THAT(host_.faults(), IsEmpty()) << "a block may outlive a call";
    host_.CheckBalance(true);
    EXPECT_THAT(TakeFaults(), SizeIs(1));
    EXPECT_EQ(host_.basic()->FreeBlock(block), kHostNoError);
    EXPECT_EQ(host_.basic()->FreeBlock(block), kHostBadParameter);
    EXPECT_EQ(host_.basic()->FreeBlock(nullptr), kHostBadParameter);
    EXPECT_THAT(TakeFaults(), SizeIs(2));
    host_.FailAllocations(true);
    EXPECT_EQ(host_.basic()->AllocateBlock(1, &block), kHostOutOfMemory);
    EXPECT_EQ(host_.BlockCount(), 0u);
}

TEST_F(StrictnessTest, AfterARefusalAMissingHandleIsNoFaultAndAStaleOneStillIs) {
    const AIArtSuite& art = ArtSuite();
    const AIUnicodeStringSuite& texts = TextSuite();
    const ArtHandle stale = NewPath()->handle;
    document().DisposeArt(document().Find(stale));
    UnicodeStringHandle text = nullptr, other = nullptr;
    ASSERT_EQ(texts.NewEmpty(&text), kHostNoError);
    host_.RefuseCall(1);
    EXPECT_EQ(texts.NewEmpty(&other), kHostRefused);
    EXPECT_EQ(texts.Assign(text, other), kHostBadHandle);
    EXPECT_THAT(host_.faults(), IsEmpty());
    int32_t kind = 0;
    EXPECT_EQ(art.GetArtKind(stale, &kind), kHostBadHandle);
    EXPECT_THAT(TakeFaults(), SizeIs(1));

    // The plug-in can't do more than ask for the disposal, so a refused one leaves no leak behind.
    host_.RefuseCall(1);
    EXPECT_EQ(texts.Dispose(text), kHostRefused);
    ReleaseAll();
    EXPECT_THAT(host_.faults(), IsEmpty());
}

TEST_F(StrictnessTest, SegmentsAreReplacedAndAddedWithoutGaps) {
    const AIPathSuite& suite = PathSuite();
    Art* path = NewPath();
    const HostPathSegment one{{1, 0}, {1, 0}, {1, 0}, 1}, two{{2, 0}, {2, 0}, {2, 0}, 0};
    const HostPathSegment both[]{one, two};
    EXPECT_EQ(suite.SetPathSegments(path->handle, 1, 1, &one), kHostBadParameter);
    EXPECT_EQ(suite.SetPathSegments(path->handle, 0, 2, both), kHostNoError);
    EXPECT_EQ(suite.SetPathSegments(path->handle, 1, 2, both), kHostNoError);
    int32_t count = 0;
    EXPECT_EQ(suite.GetPathSegmentCount(path->handle, &count), kHostNoError);
    EXPECT_EQ(count, 3);
    HostPathSegment read[2];
    EXPECT_EQ(suite.GetPathSegments(path->handle, 1, 2, read), kHostNoError);
    EXPECT_EQ(read[0].anchor.x, 1);
    EXPECT_EQ(read[1].anchor.x, 2);
    EXPECT_EQ(suite.GetPathSegments(path->handle, 2, 2, read), kHostBadParameter);
    EXPECT_EQ(suite.GetPathSegments(path->handle, INT32_MAX, INT32_MAX, read), kHostBadParameter);
    EXPECT_EQ(suite.GetPathSegments(path->handle, -1, 1, read), kHostBadParameter);
    EXPECT_THAT(TakeFaults(), SizeIs(4));
    HostPathSegment endless = one;
    endless.out.y = INFINITY;
    EXPECT_EQ(suite.SetPathSegments(path->handle, 0, 1, &endless), kHostBadParameter);
}

} // namespace
} // namespace workbench
