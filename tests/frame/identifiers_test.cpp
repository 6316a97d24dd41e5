#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "battery_rules/identifiers.h"
#include "frame/keys.h"

TEST(EntityId, CompositeAloneDecidesEqualityAndOrder) {
    const EntityId id(12, 1, 4);
    EXPECT_EQ(id.composite(), 0x000C000001000004u);
    EXPECT_EQ(EntityId(0, 0, 0).composite(), 0u);
    // Fields beyond 24 bits are masked, in the field and in the composite.
    const EntityId masked(12, 0x1000001, 0);
    EXPECT_EQ(masked.diagnostic(), 1u);
    EXPECT_EQ(masked, EntityId(12, 1, 0));
    EXPECT_LT(EntityId(12, 1, 4), EntityId(12, 2, 0));
    EXPECT_LT(EntityId(11, 0xFFFFFF, 0xFFFFFF), EntityId(12, 0, 0));
    EXPECT_NE(EntityId(12, 1, 1), EntityId(12, 1, 4));
}

TEST(EntityId, IdentifierConstantsHaveTheirComposites) {
    struct Row {
        EntityId id;
        uint64_t composite;
    };
    const Row rows[] = {
        {ID_BATTERY_MODULE, 0x000C000000000000},   {ID_BATTERY_MANAGER, 0x000C000000000000},
        {ID_QUICK_DIAGNOSTIC, 0x000C000001000000}, {ID_EXTENDED_DIAGNOSTIC, 0x000C000002000000},
        {ID_HEALTH_TEST, 0x000C000001000001},      {ID_SMART_HEALTH_TEST, 0x000C000001000001},
        {ID_TEMPERATURE_TEST, 0x000C000001000004}, {ID_DISCHARGE_TEST, 0x000C000002000002},
        {ID_CHARGE_TEST, 0x000C000002000003},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(row.id.composite(), row.composite) << std::hex << row.composite;
    }
}

TEST(Keys, ComposedHintsAndKeysWithPunctuation) {
    EXPECT_EQ(HINT_BATTERY(), "POSSIBLE_DEFECTIVE_COMPONENTS: BATTERY");
    EXPECT_EQ(HINT_BATTERY_AND_ADAPTER(), "POSSIBLE_DEFECTIVE_COMPONENTS: BATTERY, AC_ADAPTER");
    const std::pair<const char *, const char *> rows[] = {
        {keys::INTERNAL_ERROR,
         "AN_INTERNAL_ERROR_OCCURRED._|THIS_DOES_NOT_INDICATE_A_FAILURE._|PLEASE_TRY_AGAIN."},
        {keys::CHARGE_ABOVE_THRESHOLD,
         "THE_TEST_WAS_ABORTED_BECAUSE_THE_BATTERY_REMAINING_CHARGE_IS_ABOVE_THE_FOLLOWING_"
         "THRESHOLD:"},
        {keys::CHARGE_BELOW_THRESHOLD,
         "THE_TEST_WAS_ABORTED_BECAUSE_THE_BATTERY_REMAINING_CHARGE_IS_BELOW_THE_FOLLOWING_"
         "THRESHOLD"},
        {keys::PLEASE_RECHARGE, "PLEASE_RECHARGE_THE_BATTERY_AND_TRY_AGAIN"},
        {keys::PLEASE_DISCHARGE, "PLEASE_DISCHARGE_THE_BATTERY_AND_TRY_AGAIN."},
        {keys::DEVICE_NOT_IDENTIFIED,
         "THIS_TEST_CANNOT_BE_PERFORMED_BECAUSE_THE_DEVICE_COULD_NOT_BE_IDENTIFIED_OR_HAS_BEEN_"
         "DISCONNECTED"},
        {keys::UNIT_DEGREES_CELSIUS, "\xC2\xB0\x43"},
        {keys::DURATION_MINUTES, "DURATION_(MINUTES)"},
        {keys::RECHARGEABLE_ALKALINE_MANGANESE, "RECHARGEABLE_ALKALINE-MANGANESE"},
        {keys::GENERIC_UDI, "bat"},
    };
    for (const auto &row : rows) EXPECT_STREQ(row.first, row.second);
}

TEST(Keys, HostKeyTableHasNoDuplicates) {
    const auto &all = keys::allHostKeys();
    const std::set<std::string> unique(all.begin(), all.end());
    EXPECT_EQ(unique.size(), all.size());
    EXPECT_STREQ(keys::COMPONENT_CODES[0], "BA");
    EXPECT_EQ(sizeof(keys::COMPONENT_CODES) / sizeof(keys::COMPONENT_CODES[0]), 24u);
}
