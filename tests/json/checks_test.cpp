#include <syslog.h>

#include <string>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

using Check = int (*)(const json_t*, const char*);

// Each typed check bound to the arguments of one row.
int integerDefault7(const json_t* j, const char* k) { return json_check_integer_default(j, k, 7); }
int integerSuperior10(const json_t* j, const char* k) { return json_check_integer_superior(j, k, 10); }
int integerRangePort(const json_t* j, const char* k) { return json_check_integer_range(j, k, 1024, 65535); }
int floatSuperior0(const json_t* j, const char* k) { return json_check_float_superior(j, k, 0.0f); }
int floatStrict0(const json_t* j, const char* k) { return json_check_float_superior_strict(j, k, 0.0f); }
int floatSuperior100(const json_t* j, const char* k) { return json_check_float_superior(j, k, 100.0f); }
int stringFr(const json_t* j, const char* k) { return json_check_string_default(j, k, "fr"); }
int string31(const json_t* j, const char* k) {
    return json_check_string_default(j, k, "abcdefghijklmnopqrstuvwxyz01234");
}

struct CheckCase {
    const char* name;
    Check check;
    const char* document;
    int expected;
    const char* message;  // the one line logged, "" when none
};

class TypedCheck : public ::testing::TestWithParam<CheckCase> {
protected:
    void SetUp() override { zt4test::clearLog(); }
};

TEST_P(TypedCheck, ResultMessageAndObjectUntouched) {
    const CheckCase& c = GetParam();
    json_t* document = zt4test::parse(c.document);
    const std::string before = zt4test::compact(document);
    EXPECT_EQ(c.check(document, "k"), c.expected);
    EXPECT_EQ(zt4test::compact(document), before);
    if (*c.message) {
        EXPECT_TRUE(zt4test::logged(c.message, LOG_ERR)) << zt4test::logDump();
        EXPECT_EQ(zt4test::capturedLog().size(), 1u);
    } else {
        EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    }
    json_decref(document);
}

std::string caseName(const ::testing::TestParamInfo<CheckCase>& info) {
    return std::string(info.param.name) + "_" + std::to_string(info.index);
}

#define ROW(check, doc, rc, msg) CheckCase{#check, check, doc, rc, msg}

INSTANTIATE_TEST_SUITE_P(Integers, TypedCheck, ::testing::Values(
    ROW(integerDefault7, R"({"k": 7})", 0, ""),
    ROW(integerDefault7, R"({"k": 8})", -1, "error.[json_check_integer_default]: k value INVALID (8)"),
    ROW(integerDefault7, R"({"x": 7})", -1, "error.[json_check_integer_default]: k NULL"),
    ROW(integerDefault7, R"({"k": 7.0})", -1, "error.[json_check_integer_default]: k NOT JSON_INTEGER"),
    ROW(integerSuperior10, R"({"k": 10})", 0, ""),
    ROW(integerSuperior10, R"({"k": 9})", -1, "error.[json_check_integer_superior]: k value INVALID (9)"),
    ROW(integerSuperior10, R"({"k": -2147483648})", -1,
        "error.[json_check_integer_superior]: k value INVALID (-2147483648)"),
    ROW(integerSuperior10, R"({"k": "10"})", -1, "error.[json_check_integer_superior]: k NOT JSON_INTEGER"),
    ROW(integerRangePort, R"({"k": 1024})", 0, ""),
    ROW(integerRangePort, R"({"k": 65535})", 0, ""),
    ROW(integerRangePort, R"({"k": 1023})", -1, "error.[json_check_integer_range]: k value INVALID (1023)"),
    ROW(integerRangePort, R"({"k": 65536})", -1, "error.[json_check_integer_range]: k value INVALID (65536)"),
    ROW(integerRangePort, R"({"k": 4294968320})", -1,
        "error.[json_check_integer_range]: k value INVALID (4294968320)"),
    ROW(json_check_boolean, R"({"k": 0})", 0, ""),
    ROW(json_check_boolean, R"({"k": 1})", 0, ""),
    ROW(json_check_boolean, R"({"k": 2})", -1, "error.[json_check_boolean]: k value INVALID (2)"),
    ROW(json_check_boolean, R"({"k": -1})", -1, "error.[json_check_boolean]: k value INVALID (-1)"),
    ROW(json_check_boolean, R"({"k": true})", -1, "error.[json_check_boolean]: k NOT JSON_INTEGER"),
    ROW(json_check_boolean, R"({"k": false})", -1, "error.[json_check_boolean]: k NOT JSON_INTEGER"),
    ROW(json_check_boolean, R"({})", -1, "error.[json_check_boolean]: k NULL")), caseName);

INSTANTIATE_TEST_SUITE_P(Floats, TypedCheck, ::testing::Values(
    ROW(floatSuperior0, R"({"k": 5})", 0, ""),
    ROW(floatSuperior0, R"({"k": 0.0})", 0, ""),
    ROW(floatSuperior0, R"({"k": -0.5})", -1, "error.[json_check_float_superior]: k value INVALID (-0.500000)"),
    ROW(floatSuperior0, R"({"k": "1"})", -1, "error.[json_check_float_superior]: k NOT JSON_REAL"),
    ROW(floatSuperior0, R"({"k": null})", -1, "error.[json_check_float_superior]: k NOT JSON_REAL"),
    ROW(floatSuperior0, R"({})", -1, "error.[json_check_float_superior]: k NULL"),
    ROW(floatSuperior100, R"({"k": 99.9})", -1, "error.[json_check_float_superior]: k value INVALID (99.900000)"),
    ROW(floatSuperior100, R"({"k": 100})", 0, ""),
    ROW(floatStrict0, R"({"k": 0.0})", -1, "error.[json_check_float_superior_strict]: k value INVALID (0.000000)"),
    ROW(floatStrict0, R"({"k": 0})", -1, "error.[json_check_float_superior_strict]: k value INVALID (0.000000)"),
    ROW(floatStrict0, R"({"k": 0.001})", 0, ""),
    ROW(floatStrict0, R"({"k": [1]})", -1, "error.[json_check_float_superior_strict]: k NOT JSON_REAL")), caseName);

INSTANTIATE_TEST_SUITE_P(Strings, TypedCheck, ::testing::Values(
    ROW(stringFr, R"({"k": "fr"})", 0, ""),
    ROW(stringFr, R"({"k": "fra"})", -1, "error.[json_check_string_default]: k value INVALID (fra)"),
    ROW(stringFr, R"({"k": ""})", -1, "error.[json_check_string_default]: k value INVALID ()"),
    ROW(stringFr, R"({"k": 1})", -1, "error.[json_check_string_default]: k NOT JSON_STRING"),
    ROW(stringFr, R"({})", -1, "error.[json_check_string_default]: k NULL"),
    // Only the first 31 characters of the stored value take part.
    ROW(string31, R"({"k": "abcdefghijklmnopqrstuvwxyz01234-and-more"})", 0, ""),
    ROW(string31, R"({"k": "abcdefghijklmnopqrstuvwxyz0123"})", -1,
        "error.[json_check_string_default]: k value INVALID (abcdefghijklmnopqrstuvwxyz0123)"),
    ROW(json_check_ipv4, R"({"k": "192.168.1.66"})", 0, ""),
    ROW(json_check_ipv4, R"({"k": "0.0.0.0"})", 0, ""),
    ROW(json_check_ipv4, R"({"k": "256.1.1.1"})", -1, "error.[json_check_ipv4]: k value INVALID"),
    ROW(json_check_ipv4, R"({"k": "10.42.0"})", -1, "error.[json_check_ipv4]: k value INVALID"),
    ROW(json_check_ipv4, R"({"k": " 10.42.0.1"})", -1, "error.[json_check_ipv4]: k value INVALID"),
    ROW(json_check_ipv4, R"({"k": "::1"})", -1, "error.[json_check_ipv4]: k value INVALID"),
    ROW(json_check_ipv4, R"({"k": 10})", -1, "error.[json_check_ipv4]: k NOT JSON_STRING"),
    ROW(json_check_ipv4, R"({})", -1, "error.[json_check_ipv4]: k NULL"),
    ROW(json_check_ipv4_addressing, R"({"k": "Static"})", 0, ""),
    ROW(json_check_ipv4_addressing, R"({"k": "DHCP"})", 0, ""),
    ROW(json_check_ipv4_addressing, R"({"k": "DHCPv6 please"})", 0, ""),
    ROW(json_check_ipv4_addressing, R"({"k": "Statically"})", 0, ""),
    ROW(json_check_ipv4_addressing, R"({"k": "static"})", -1, "error.[json_check_ipv4_addressing]: k value static INVALID"),
    ROW(json_check_ipv4_addressing, R"({"k": "DHC"})", -1, "error.[json_check_ipv4_addressing]: k value DHC INVALID"),
    ROW(json_check_ipv4_addressing, R"({"k": {}})", -1, "error.[json_check_ipv4_addressing]: k NOT JSON_STRING")), caseName);

#undef ROW

TEST(TypedCheckArguments, NullObjectOrKeyFailsWithoutCrash) {
    zt4test::clearLog();
    EXPECT_EQ(json_check_boolean(nullptr, "k"), -1);
    EXPECT_TRUE(zt4test::logged("error.[json_check_boolean]: json NULL", LOG_ERR));
    json_t* object = json_object();
    EXPECT_EQ(json_check_ipv4(object, nullptr), -1);
    EXPECT_TRUE(zt4test::logged("error.[json_check_ipv4]: key NULL", LOG_ERR));
    json_decref(object);
}

}  // namespace
