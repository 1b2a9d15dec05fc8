#include "plugin/host/host_string.h"

#include <cstring>

#include "plugin/host/suites.h"
#include "tests/support/plugin_fixture.h"

namespace {

TEST_F(PluginFixture, HostStringsAreCutAt255BytesWithoutAnError) {
    for (const size_t length : {0u, 254u, 255u, 256u, 1000u}) {
        const std::string text(length, 'a');
        const HostString string(text.data(), text.size(), kEncodingCp932);
        char buffer[kHostStringCapacity];
        std::memset(buffer, 'x', sizeof buffer);
        const size_t count = HostStringBytes(string.get(), kEncodingCp932, buffer);
        EXPECT_EQ(count, std::strlen(buffer));
        EXPECT_EQ(buffer, text.substr(0, 255));
    }
}

} // namespace
