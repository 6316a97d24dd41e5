#include <gtest/gtest.h>

#include "battery_module/resource.h"

namespace {

// A resource whose tables the test fills, to reach what the base class keeps.
class TableResource : public Resource {
public:
    TableResource() : Resource(EntityId(12, 0, 0)) {}
    std::string getDiagnosticName(const EntityId &) override { return ""; }
    std::string getTestName(const EntityId &) override { return ""; }
    std::string getDiagnosticTooltip(const EntityId &) override { return ""; }
    std::string getTestDescription(const EntityId &) override { return ""; }

    using Resource::addDiagnosticOption;
    using Resource::addTestOption;
    void setOwnRangeLabels() { setRangeLabels(rangeLabels); }
};

TEST(Resource, ASecondRowWithTheSameCompositeIsDroppedAndTheFirstStays) {
    TableResource resource;
    resource.addTestOption(EntityId(12, 1, 1), {"h", "first", 2});
    // The diagnostic field is masked to 24 bits: the same composite.
    resource.addTestOption(EntityId(12, 0x1000001, 1), {"x", "second", 2});
    resource.addDiagnosticOption(EntityId(12, 1, 0), {"Q", "quick", 0});
    resource.addDiagnosticOption(EntityId(12, 1, 0), {"Z", "other", 0});

    const Resource::OptionTable tests = resource.getTestOptions();
    ASSERT_EQ(tests.size(), 1u);
    EXPECT_EQ(tests.begin()->second.longName, "first");
    const Resource::OptionTable diagnostics = resource.getDiagnosticOptions();
    ASSERT_EQ(diagnostics.size(), 1u);
    EXPECT_EQ(diagnostics.begin()->second.shortName, "Q");
}

TEST(Resource, TablesAreOrderedByComposite) {
    TableResource resource;
    resource.addTestOption(EntityId(12, 2, 3), {"c", "", 2});
    resource.addTestOption(EntityId(12, 1, 4), {"t", "", 2});
    resource.addTestOption(EntityId(12, 1, 1), {"h", "", 2});
    std::string order;
    for (const auto &row : resource.getTestOptions()) order += row.second.shortName;
    EXPECT_EQ(order, "htc");
}

TEST(Resource, WhatAGetterReturnsIsTheCallersOwnCopy) {
    TableResource resource;
    resource.addTestOption(EntityId(12, 1, 1), {"h", "battery-health-test", 2});
    Resource::OptionTable options = resource.getTestOptions();
    options.begin()->second.shortName = "changed";
    options.emplace(EntityId(12, 1, 4), CommandLineOption{"t", "", 2});
    EXPECT_EQ(resource.getTestOptions().size(), 1u);
    EXPECT_EQ(resource.getTestOptions().begin()->second.shortName, "h");
}

TEST(Resource, RangeLabels) {
    TableResource resource;
    EXPECT_TRUE(resource.getRangeLabels().empty());

    resource.setRangeLabels({{2, "+ 20"}, {0, "0 - 2"}, {1, "+ 20"}});
    Resource::RangeLabels copy = resource.getRangeLabels();
    resource.setRangeLabels(copy); // equal rows from a different map
    EXPECT_EQ(resource.getRangeLabels(), copy);
    resource.setOwnRangeLabels(); // its own map: nothing to do
    EXPECT_EQ(resource.getRangeLabels(), copy);

    copy[0] = "changed";
    EXPECT_EQ(resource.getRangeLabels().at(0), "0 - 2");

    resource.setRangeLabels({{7, "seven"}}); // replaces, not merges
    EXPECT_EQ(resource.getRangeLabels(), (Resource::RangeLabels{{7, "seven"}}));
}

} // namespace
