#include "plugin/host/suite_table.h"

#include <gtest/gtest.h>

#include <set>

#include "plugin/frame/globals.h"
#include "tests/support/recording_basic.h"
#include "workbench/suites/host.h"

namespace {

constexpr HostError kSomeError = 4711;

class SuiteTableTest : public ::testing::Test {
protected:
    void TearDown() override {
        EXPECT_EQ(suiteUseCount, 0);
        host.CheckBalance();
        for (const std::string& fault : host.faults()) ADD_FAILURE() << fault;
    }

    static std::vector<std::string> Names(size_t first, size_t end) {
        std::vector<std::string> names;
        for (size_t i = first; i < end; ++i) names.push_back(SuiteTable()[i].name);
        return names;
    }

    static size_t HeldRows() {
        size_t held = 0;
        for (const SuiteRow& row : SuiteTable()) held += *row.slot != nullptr;
        return held;
    }

    /// A row's name by its number from 1.
    static std::string Row(size_t number) { return SuiteTable()[number - 1].name; }

    HostError Acquire() { return AcquireHostSuites(recording.basic()); }
    HostError Release() { return ReleaseHostSuites(recording.basic()); }

    workbench::Host host;
    RecordingBasic recording{host.basic()};
};

// The host's own list was written without a look at this one.
TEST_F(SuiteTableTest, AsksForWhatTheHostSupplies) {
    std::set<std::pair<std::string, uint32_t>> supplied, wanted;
    for (const auto& suite : workbench::SuppliedSuites()) supplied.emplace(suite.name, suite.version);
    for (const SuiteRow& row : SuiteTable()) wanted.emplace(row.name, row.version);
    EXPECT_EQ(wanted.size(), kSuiteCount);
    EXPECT_EQ(wanted, supplied);
}

TEST_F(SuiteTableTest, OnlyTheOutermostPairAcquiresAndReleases) {
    ASSERT_EQ(Acquire(), kHostNoError);
    EXPECT_EQ(recording.acquired, Names(0, kSuiteCount));
    EXPECT_EQ(HeldRows(), kSuiteCount);

    ASSERT_EQ(Acquire(), kHostNoError);
    EXPECT_EQ(suiteUseCount, 2);
    ASSERT_EQ(Release(), kHostNoError);
    EXPECT_EQ(recording.acquired.size(), kSuiteCount);
    EXPECT_TRUE(recording.released.empty());
    EXPECT_EQ(HeldRows(), kSuiteCount);

    ASSERT_EQ(Release(), kHostNoError);
    EXPECT_EQ(recording.released, Names(0, kSuiteCount));
    EXPECT_EQ(HeldRows(), 0u);
}

TEST_F(SuiteTableTest, FailureIsShownByNameAndWhatWasHeldIsGivenBack) {
    recording.failAcquire[Row(50)] = kSomeError;
    EXPECT_EQ(Acquire(), kSomeError);
    EXPECT_EQ(suiteUseCount, 1);
    EXPECT_EQ(HeldRows(), 49u);
    ASSERT_EQ(host.alerts().size(), 1u);
    EXPECT_FALSE(host.alerts()[0].error);
    EXPECT_EQ(host.alerts()[0].text, "Error: 4711, suite: ATE CompFontSet Suite, version: 1!");

    recording.released.clear();
    EXPECT_EQ(Release(), kHostNoError);
    EXPECT_EQ(recording.released, Names(0, 49));
    EXPECT_EQ(HeldRows(), 0u);
}

// Without the suite for alerts nobody could be told, and the plug-in does without the suite that failed, but
// for the last one, which alerts are worded with.
TEST_F(SuiteTableTest, WithoutTheAlertSuiteOnlyTheLastRowDecides) {
    recording.failAcquire["AI User Suite"] = kSomeError;
    recording.failAcquire[Row(5)] = recording.failAcquire[Row(60)] = kSomeError;
    EXPECT_EQ(Acquire(), kHostNoError);
    EXPECT_EQ(HeldRows(), kSuiteCount - 3);
    EXPECT_EQ(Release(), kHostNoError);

    recording.failAcquire = {{Row(kSuiteCount), kSomeError}};
    EXPECT_EQ(Acquire(), kSomeError);
    EXPECT_TRUE(host.alerts().empty());
    EXPECT_EQ(Release(), kHostNoError);

    recording.failOnce = true; // it can be had for the alert
    EXPECT_EQ(Acquire(), kSomeError);
    ASSERT_EQ(host.alerts().size(), 1u);
    EXPECT_EQ(host.alerts()[0].text, "Error: 4711, suite: AI Unicode String Suite, version: 8!");
    EXPECT_EQ(HeldRows(), kSuiteCount - 1);
    EXPECT_EQ(Release(), kHostNoError);
}

TEST_F(SuiteTableTest, FailedReleaseStopsTheWalkButStillCounts) {
    ASSERT_EQ(Acquire(), kHostNoError);
    recording.failRelease[Row(3)] = kSomeError;
    EXPECT_EQ(Release(), kSomeError);
    EXPECT_EQ(suiteUseCount, 0);
    EXPECT_EQ(recording.released, Names(0, 2));
    EXPECT_EQ(HeldRows(), kSuiteCount - 2);

    // What is still held is given back here, so that the host's balance is even.
    recording.failRelease.clear();
    suiteUseCount = 1;
    EXPECT_EQ(Release(), kHostNoError);
}

} // namespace
