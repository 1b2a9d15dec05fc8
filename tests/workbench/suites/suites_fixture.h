/// A host with an empty document, whose suites a test calls as a plug-in would.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "suites/art.h"
#include "suites/basic.h"
#include "suites/document.h"
#include "suites/draw.h"
#include "suites/frame.h"
#include "suites/paint.h"
#include "workbench/suites/host.h"

namespace workbench {

class SuitesFixture : public ::testing::Test {
protected:
    SuitesFixture() { host_.Open(std::make_unique<Document>()); }

    /// Acquires a suite for the length of the test.
    template <typename Suite>
    const Suite& Use(const char* name, uint32_t version) {
        const void* table = nullptr;
        EXPECT_EQ(host_.basic()->AcquireSuite(name, version, &table), kHostNoError) << name;
        held_.emplace_back(name, version);
        return *static_cast<const Suite*>(table);
    }
    const AIArtSuite& ArtSuite() { return Use<AIArtSuite>("AI Art Suite", 17); }
    const AIPathSuite& PathSuite() { return Use<AIPathSuite>("AI Path Suite", 11); }
    const AIUnicodeStringSuite& TextSuite() {
        return Use<AIUnicodeStringSuite>("AI Unicode String Suite", 8);
    }

    void ReleaseAll() {
        for (const auto& [name, version] : held_) {
            EXPECT_EQ(host_.basic()->ReleaseSuite(name, version), kHostNoError);
        }
        held_.clear();
    }

    /// What the test did must have been sound unless it took the faults.
    void TearDown() override {
        ReleaseAll();
        host_.CheckBalance(true);
        EXPECT_THAT(host_.faults(), ::testing::IsEmpty());
    }

    std::vector<std::string> TakeFaults() {
        auto faults = host_.faults();
        host_.ClearFaults();
        return faults;
    }

    Document& document() { return *host_.front(); }
    Art* NewPath() { return document().AppendArt(kArtPath, document().CurrentLayer().root); }

    Host host_;

private:
    std::vector<std::pair<const char*, uint32_t>> held_;
};

} // namespace workbench
