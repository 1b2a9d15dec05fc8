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

TEST_F(HostStringTest, CutsAt255BytesWithoutAnError) {
    for (const size_t length : {0u, 254u, 255u, 256u, 1000u}) {
        const std::string text(length, 'a');
        const HostString string(text.data(), text.size(), kEncodingCp932);
        EXPECT_EQ(Bytes(string.get(), kEncodingCp932), text.substr(0, 255));
    }
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
