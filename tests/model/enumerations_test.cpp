#include <climits>
#include <cmath>
#include <string>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

// In range the accessors give the table's entries; from the count on, their fixed fallbacks.
TEST(Enumerations, AccessorsStopAtTheTableEnd) {
    for (unsigned i : {0u, 8u}) {
        EXPECT_EQ(getNamePlier(i), Plier[i].name);
        EXPECT_EQ(getRatePlier(i), Plier[i].rate);
        EXPECT_EQ(getxPlier(i), Plier[i].x);
        EXPECT_EQ(getAmpsPlier(i), Plier[i].amps);
    }
    EXPECT_STREQ(getNamePlier(6), "RCT-1000");
    EXPECT_STREQ(getRatePlier(6), "1000A : 100mV");
    EXPECT_EQ(getxPlier(6), 100.0f);
    for (unsigned i : {9u, UINT_MAX}) {
        EXPECT_STREQ(getNamePlier(i), "");
        EXPECT_STREQ(getRatePlier(i), "");
        EXPECT_EQ(getxPlier(i), 1.0f);
        EXPECT_EQ(getAmpsPlier(i), 0u);
    }
    EXPECT_EQ(getNameMode(6), Mode[6]);
    EXPECT_STREQ(getNameMode(6), "Triphase with Voltage Transformer");
    EXPECT_STREQ(getNameMode(7), "");
    EXPECT_STREQ(getNameMode(UINT_MAX), "");
}

struct ValidatorCase {
    const char* call;
    int (*run)();
    int expected;
};

class Validators : public ::testing::TestWithParam<ValidatorCase> {};

TEST_P(Validators, AcceptExactlyTheirRange) {
    zt4test::clearLog();
    EXPECT_EQ(GetParam().run(), GetParam().expected) << GetParam().call;
    EXPECT_TRUE(zt4test::capturedLog().empty());
}

#define CASE(expression, expected) ValidatorCase{#expression, [] { return expression; }, expected}

INSTANTIATE_TEST_SUITE_P(Bounds, Validators, ::testing::Values(
    CASE(isConnectorValid(0), -1), CASE(isConnectorValid(1), 0), CASE(isConnectorValid(6), 0),
    CASE(isConnectorValid(7), -1), CASE(isChannelValid(0), -1), CASE(isChannelValid(4), 0),
    CASE(isChannelValid(5), -1), CASE(isEnableValid(-1), -1), CASE(isEnableValid(1), 0),
    CASE(isEnableValid(2), -1), CASE(isModeValid(6), 0), CASE(isModeValid(7), -1),
    CASE(isModeEnabled(0), -1), CASE(isModeEnabled(-1), 0), CASE(isPhaseValid(0), -1),
    CASE(isPhaseValid(3), 0), CASE(isPhaseValid(4), -1), CASE(isPlierValid(8), 0),
    CASE(isPlierValid(9), -1), CASE(isDirectionValid(-1), -1), CASE(isDirectionValid(1), 0),
    CASE(isDirectionValid(2), -1), CASE(isXValid(0), -1), CASE(isXValid(1), 0),
    CASE(isXPlierValid(-0.0f), -1), CASE(isXPlierValid(1e-30f), 0),
    CASE(isXPlierValid(NAN), -1), CASE(isXFactorValid(-0.0f), 0),
    CASE(isXFactorValid(-1e-30f), -1), CASE(isXFactorValid(NAN), -1),
    CASE(isXGeneralValid(0.0f), -1), CASE(isXGeneralValid(1e-30f), 0),
    CASE(isXGeneralValid(INFINITY), 0)));

#undef CASE

}  // namespace
