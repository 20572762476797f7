#include <climits>
#include <cmath>
#include <string>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

struct PlierRow {
    unsigned index;
    const char* name;
    const char* rate;
    float x;
    uint32_t amps;
};

class PlierAccessors : public ::testing::TestWithParam<PlierRow> {};

TEST_P(PlierAccessors, AnswerFromTheCatalogueOrTheirOutOfRangeValue) {
    const PlierRow& row = GetParam();
    ASSERT_NE(getNamePlier(row.index), nullptr);
    ASSERT_NE(getRatePlier(row.index), nullptr);
    EXPECT_STREQ(getNamePlier(row.index), row.name);
    EXPECT_STREQ(getRatePlier(row.index), row.rate);
    EXPECT_EQ(getxPlier(row.index), row.x);
    EXPECT_EQ(getAmpsPlier(row.index), row.amps);
}

INSTANTIATE_TEST_SUITE_P(Catalogue, PlierAccessors, ::testing::Values(
    PlierRow{0, "", "", 1.0f, 1},
    PlierRow{1, "Adaptator TI 5A", "5A : 333mV", 333.0f, 5},
    PlierRow{2, "JC10F30-333", "30A : 333mV", 333.0f, 30},
    PlierRow{3, "JC16F70-333", "70A : 333mV", 333.0f, 70},
    PlierRow{4, "JC24F200-333", "200A : 333mV", 333.0f, 200},
    PlierRow{5, "JC36S400-333", "400A : 333mV", 333.0f, 400},
    PlierRow{6, "RCT-1000", "1000A : 100mV", 100.0f, 1000},
    PlierRow{7, "CT 100A", "100A : 333mV", 333.0f, 100},
    PlierRow{8, "CT 1A", "1A : 333mV", 333.0f, 1},
    PlierRow{9, "", "", 1.0f, 0},
    PlierRow{200, "", "", 1.0f, 0},
    PlierRow{UINT_MAX, "", "", 1.0f, 0}));

TEST(ModeNames, CoverTheSevenModesAndNothingBeyond) {
    const char* const expected[] = {"Disabled", "Monophase", "Triphase with neutral",
                                    "Triphase balanced with neutral", "Triphase",
                                    "Triphase balanced", "Triphase with Voltage Transformer"};
    for (unsigned mode = 0; mode < 7; ++mode) {
        EXPECT_STREQ(getNameMode(mode), expected[mode]) << mode;
        EXPECT_EQ(getNameMode(mode), Mode[mode]) << "accessor and table differ at " << mode;
    }
    for (unsigned mode : {7u, 8u, 255u, UINT_MAX}) {
        ASSERT_NE(getNameMode(mode), nullptr);
        EXPECT_STREQ(getNameMode(mode), "") << mode;
    }
    EXPECT_EQ(Plier[6].amps, 1000u);
    EXPECT_EQ(sizeof Plier / sizeof Plier[0], 9u);
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
    CASE(isConnectorValid(7), -1), CASE(isConnectorValid(UINT_MAX), -1),
    CASE(isChannelValid(0), -1), CASE(isChannelValid(1), 0), CASE(isChannelValid(4), 0),
    CASE(isChannelValid(5), -1),
    CASE(isEnableValid(-1), -1), CASE(isEnableValid(0), 0), CASE(isEnableValid(1), 0),
    CASE(isEnableValid(2), -1),
    CASE(isModeValid(0), 0), CASE(isModeValid(6), 0), CASE(isModeValid(7), -1),
    CASE(isModeValid(UINT_MAX), -1),
    CASE(isModeEnabled(0), -1), CASE(isModeEnabled(1), 0), CASE(isModeEnabled(-1), 0),
    CASE(isPhaseValid(0), -1), CASE(isPhaseValid(1), 0), CASE(isPhaseValid(3), 0),
    CASE(isPhaseValid(4), -1),
    CASE(isPlierValid(0), 0), CASE(isPlierValid(8), 0), CASE(isPlierValid(9), -1),
    CASE(isDirectionValid(-1), -1), CASE(isDirectionValid(0), 0), CASE(isDirectionValid(1), 0),
    CASE(isDirectionValid(2), -1),
    CASE(isXValid(INT_MIN), -1), CASE(isXValid(0), -1), CASE(isXValid(1), 0),
    CASE(isXValid(INT_MAX), 0),
    CASE(isXPlierValid(0.0f), -1), CASE(isXPlierValid(-0.0f), -1), CASE(isXPlierValid(1e-30f), 0),
    CASE(isXPlierValid(-1.0f), -1), CASE(isXPlierValid(NAN), -1),
    CASE(isXFactorValid(0.0f), 0), CASE(isXFactorValid(-0.0f), 0),
    CASE(isXFactorValid(-1e-30f), -1), CASE(isXFactorValid(NAN), -1),
    CASE(isXGeneralValid(0.0f), -1), CASE(isXGeneralValid(1e-30f), 0),
    CASE(isXGeneralValid(-2.5f), -1), CASE(isXGeneralValid(INFINITY), 0)));

#undef CASE

}  // namespace
