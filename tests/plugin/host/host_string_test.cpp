#include "plugin/host/host_string.h"

#include <cstring>

#include "plugin/host/suites.h"
#include "tests/support/plugin_fixture.h"

namespace {

class HostStringTest : public PluginFixture {
protected:
    static std::string Bytes(UnicodeStringHandle string, int32_t encoding) {
        char buffer[kHostStringCapacity];
        std::memset(buffer, 'x', sizeof buffer);
        const size_t count = HostStringBytes(string, encoding, buffer);
        EXPECT_EQ(count, std::strlen(buffer));
        return buffer;
    }
};

TEST_F(HostStringTest, KeepsJapaneseBytes) {
    const std::string text = "表示ソ"; // second bytes of these hold a backslash
    const HostString string(text.data(), text.size(), kEncodingCp932);
    ASSERT_NE(string.get(), nullptr);
    EXPECT_EQ(Bytes(string.get(), kEncodingCp932), text);
    EXPECT_EQ(Bytes(string.get(), kEncodingPlatform), text);
    EXPECT_EQ(Bytes(string.get(), kEncodingUtf8), "\xE8\xA1\xA8\xE7\xA4\xBA\xE3\x82\xBD");
}

TEST_F(HostStringTest, CutsAt255BytesWithoutAnError) {
    for (const size_t length : {0u, 254u, 255u, 256u, 1000u}) {
        const std::string text(length, 'a');
        const HostString string(text.data(), text.size(), kEncodingCp932);
        EXPECT_EQ(Bytes(string.get(), kEncodingCp932), text.substr(0, 255));
    }
}

TEST_F(HostStringTest, AssignsAndMakesEmptyOnes) {
    const HostString source("abc", 3, kEncodingCp932), target;
    EXPECT_EQ(Bytes(target.get(), kEncodingCp932), "");
    EXPECT_EQ(AssignHostString(target.get(), source.get()), kHostNoError);
    EXPECT_EQ(Bytes(target.get(), kEncodingCp932), "abc");
}

TEST_F(HostStringTest, RefusedStringsAndPathsAreNull) {
    host().RefuseCall(1);
    EXPECT_EQ(HostString().get(), nullptr);
    host().RefuseCall(1);
    EXPECT_EQ(HostString("a", 1, kEncodingCp932).get(), nullptr);
    const HostString text("\\a", 2, kEncodingCp932);
    host().RefuseCall(1);
    EXPECT_EQ(HostFilePath(text.get()).get(), nullptr);
    EXPECT_NE(HostFilePath(text.get()).get(), nullptr);
    host().RefuseCall(1);
    EXPECT_EQ(Bytes(text.get(), kEncodingCp932), "");
}

} // namespace
