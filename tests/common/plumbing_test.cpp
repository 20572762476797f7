#include <cstdlib>
#include <new>
#include <stdexcept>

#include "common/api.hpp"
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "support/harness.hpp"

namespace {

using zt4test::logged;

struct RootCase { const char *name, *root, *path, *expected; };  // root nullptr: ZT4_ROOT unset

class ResolvePath : public ::testing::TestWithParam<RootCase> {};

TEST_P(ResolvePath, PrefixesTheRootOnlyWhenSet) {
    const RootCase& c = GetParam();
    if (c.root) setenv("ZT4_ROOT", c.root, 1); else unsetenv("ZT4_ROOT");
    EXPECT_EQ(zt4::resolvePath(c.path), c.expected);
    unsetenv("ZT4_ROOT");
}

INSTANTIATE_TEST_SUITE_P(Roots, ResolvePath, ::testing::Values(
    RootCase{"Unset", nullptr, "/home/nvram/zt4config.json", "/home/nvram/zt4config.json"},
    RootCase{"Empty", "", "/etc/x", "/etc/x"},
    RootCase{"Directory", "/tmp/dev", "/etc/x", "/tmp/dev/etc/x"},
    RootCase{"TrailingSlashes", "/tmp/dev//", "/etc/x", "/tmp/dev/etc/x"},
    RootCase{"FilesystemRoot", "/", "/etc/x", "/etc/x"}), zt4test::ByName());

// The log's prefixes and priorities, and the guard that turns an exception into the failure
// result with its reason logged.
TEST(Log, PrefixesPrioritiesAndGuardedExceptions) {
    zt4test::clearLog();
    zt4::logError("readJSONFile", "fd INVALID for %s", "/x");
    zt4::logInfo("writeJSONZT4ConfigFile", "File '%s' renamed successfully", "/t");
    zt4::logErrorAt(LOG_WARNING, "JSONify", "json_loads on line %d", 3);
    zt4::logLine(LOG_INFO, "Configuration file Syntax 0 by default");
    EXPECT_EQ(zt4::guarded("op", -1, []() -> int { throw std::bad_alloc(); }), -1);
    EXPECT_EQ(zt4::guarded("op", -2, []() -> int { throw std::runtime_error("boom"); }), -2);
    EXPECT_EQ(zt4::guarded("op", -1, [] { return 7; }), 7);
    const std::vector<std::pair<int, std::string>> expected = {
        {LOG_ERR, "error.[readJSONFile]: fd INVALID for /x"}, {LOG_INFO, "[writeJSONZT4ConfigFile]: File '/t' renamed successfully"},
        {LOG_WARNING, "error.[JSONify]: json_loads on line 3"}, {LOG_INFO, "Configuration file Syntax 0 by default"},
        {LOG_ERR, "error.[op]: out of memory"}, {LOG_ERR, "error.[op]: boom"}};
    std::vector<std::pair<int, std::string>> got;
    for (const auto& entry : zt4test::capturedLog()) got.emplace_back(entry.priority, entry.text);
    EXPECT_EQ(got, expected);
}

TEST(JsonRef, ReleasesExactlyOnceAndHandsOver) {
    json_t* value = json_object();
    {
        zt4::JsonRef extra = zt4::JsonRef::borrow(value);
        EXPECT_EQ(value->refcount, 2u);
        zt4::JsonRef moved = std::move(extra);
        EXPECT_FALSE(extra);
        EXPECT_EQ(moved.get(), value);
    }
    EXPECT_EQ(value->refcount, 1u);
    zt4::JsonRef owner(value);
    json_t* handed = owner.release();
    EXPECT_FALSE(owner);
    EXPECT_EQ(handed->refcount, 1u);
    json_decref(handed);
}

}  // namespace
