#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "emulator/notebook.h"
#include "fake_wbem.h"
#include "generic_battery/wmi_client.h"
#include "support/scenario.h"
#include "support/test_name.h"

namespace {

const WCHAR kCimv2[] = WIDE_TEXT("ROOT\\CIMV2");

// A machine with two batteries the service knows, in the given COM state.
std::string machine(const std::string &instrumentation) {
    return R"({"name": "wmi", "instrumentation": )" + instrumentation + R"(,
        "batteries": [{"slot": 0, "uniqueId": "ID-A", "designVoltage_mV": 11400},
                      {"slot": 1, "uniqueId": "ID-B", "designVoltage_mV": 7600}]})";
}

void expectComBalanced() {
    const emulator::Counters &counters = emulator::Notebook::instance().counters();
    EXPECT_EQ(counters.comObjects, 0) << "a COM object was not released";
    EXPECT_EQ(counters.comStartups, 0) << "a CoInitializeEx was not balanced";
    EXPECT_EQ(counters.comUnbalancedUninitializations, 0u);
}

uint32_t queryVoltage(const char *condition, WmiResults &results) {
    const char *names[] = {"DesignVoltage"};
    WmiClient client;
    return client.queryProperties(names, condition, "Win32_Battery", 1, results, kCimv2);
}

struct SelectCase {
    std::vector<std::string> names;
    const char *condition;
    const char *className;
    std::string expected;
};

class BuildSelect : public ::testing::TestWithParam<SelectCase> {};

TEST_P(BuildSelect, GivesExactlyTheStatementInAnAllocationOfItsSize) {
    const SelectCase &c = GetParam();
    std::vector<const char *> names;
    for (const std::string &name : c.names) names.push_back(name.c_str());
    char *statement = nullptr;
    WmiClient client;
    ASSERT_EQ(client.buildSelect(names.data(), c.condition, c.className,
                                 static_cast<int32_t>(names.size()), statement),
              wmi_code::Success);
    ASSERT_NE(statement, nullptr);
    EXPECT_EQ(std::string(statement), c.expected);
    delete[] statement;
}

const std::string kLongName(60, 'n');
const std::string kLongCondition(600, 'c');
const std::string kLongClass(70, 'k');

INSTANTIATE_TEST_SUITE_P(
    Statements, BuildSelect,
    ::testing::Values(
        SelectCase{{"a", "b"}, nullptr, "c", "SELECT a, b FROM c"},
        SelectCase{{"DesignVoltage"},
                   "DeviceID = 'X 1'",
                   "Win32_Battery",
                   "SELECT DesignVoltage FROM Win32_Battery WHERE DeviceID = 'X 1'"},
        SelectCase{{kLongName}, nullptr, "c", "SELECT " + std::string(50, 'n') + " FROM c"},
        SelectCase{{"a"},
                   kLongCondition.c_str(),
                   kLongClass.c_str(),
                   "SELECT a FROM " + std::string(50, 'k') + " WHERE " + std::string(500, 'c')},
        SelectCase{{"a", "b", "c"}, "", "d", "SELECT a, b, c FROM d WHERE "}),
    NameBy<&SelectCase::expected>());

TEST(BuildSelect, RefusesMissingPartsBeforeTakingMemory) {
    const char *names[] = {"a", nullptr};
    char *statement = reinterpret_cast<char *>(1);
    WmiClient client;
    EXPECT_EQ(client.buildSelect(nullptr, nullptr, "c", 1, statement), wmi_code::NullPropertyName);
    EXPECT_EQ(statement, nullptr);
    EXPECT_EQ(client.buildSelect(names, nullptr, "c", 0, statement), wmi_code::NoProperties);
    EXPECT_EQ(client.buildSelect(names, nullptr, "c", -3, statement), wmi_code::NoProperties);
    EXPECT_EQ(client.buildSelect(names, nullptr, "c", 2, statement), wmi_code::NullPropertyName);
    EXPECT_EQ(client.buildSelect(names, nullptr, nullptr, 1, statement), wmi_code::NullClassName);
    EXPECT_EQ(statement, nullptr);
}

struct QueryCase {
    const char *instrumentation;
    const char *condition;
    const char *className;
    const WCHAR *space;
    uint32_t code;
    WmiResults results;
};

class Query : public ::testing::TestWithParam<QueryCase> {};

// With several rows the last row wins; no row is no error.
TEST_P(Query, GivesTheCodeAndTheValuesAndLeavesNothingOpen) {
    const QueryCase &c = GetParam();
    useScenarioText(machine(c.instrumentation));
    const char *names[] = {"DesignVoltage"};
    WmiResults results;
    {
        WmiClient client;
        EXPECT_EQ(client.queryProperties(names, c.condition, c.className, 1, results, c.space),
                  c.code);
    }
    EXPECT_EQ(results, c.results);
    expectComBalanced();
    if (c.code == 0) {
        EXPECT_EQ(emulator::Notebook::instance().counters().wmiQueries, 1u);
    }
}

const char *kBattery = "Win32_Battery";
const WmiResults kA = {{"DesignVoltage", "11400"}};

INSTANTIATE_TEST_SUITE_P(
    Table, Query,
    ::testing::Values(
        QueryCase{"{}", "DeviceID = 'ID-B'", kBattery, kCimv2, 0, {{"DesignVoltage", "7600"}}},
        QueryCase{"{}", "DeviceID = 'nobody'", kBattery, kCimv2, 0, {}},
        QueryCase{"{}", nullptr, kBattery, kCimv2, 0, {{"DesignVoltage", "7600"}}},
        QueryCase{"{}", nullptr, "Win32_Fan", kCimv2, wmi_code::QueryFailed, {}},
        QueryCase{"{}", "DeviceID = ID-A", kBattery, kCimv2, wmi_code::QueryFailed, {}},
        QueryCase{"{}", nullptr, kBattery, WIDE_TEXT("ROOT\\WMI"), wmi_code::ConnectFailed, {}},
        QueryCase{R"({"designVoltageType": "int32"})", "DeviceID = 'ID-A'", kBattery, kCimv2, 0,
                  kA},
        QueryCase{R"({"designVoltageType": "null"})",
                  "DeviceID = 'ID-A'",
                  kBattery,
                  kCimv2,
                  0,
                  {{"DesignVoltage", ""}}}),
    [](const ::testing::TestParamInfo<QueryCase> &info) {
        const QueryCase &c = info.param;
        return testName(std::string(c.instrumentation) + " " +
                        (c.condition == nullptr ? "all" : c.condition) + " " + c.className +
                        (c.space == kCimv2 ? "" : " elsewhere"));
    });

struct StepFailure {
    const char *step;
    uint32_t initializeCode;
    uint32_t queryCode;
};

class FailingStep : public ::testing::TestWithParam<StepFailure> {};

TEST_P(FailingStep, GivesItsCodeAndLeavesNothingOpen) {
    useScenarioText(machine(std::string(R"({"failingStep": ")") + GetParam().step + "\"}"));
    {
        WmiClient client;
        EXPECT_EQ(client.initializeCom(), GetParam().initializeCode);
        const char *names[] = {"DesignVoltage"};
        WmiResults results;
        EXPECT_EQ(
            client.queryProperties(names, "DeviceID = 'ID-A'", "Win32_Battery", 1, results, kCimv2),
            GetParam().queryCode);
        if (GetParam().queryCode == wmi_code::Success) {
            EXPECT_EQ(results["DesignVoltage"], "11400");
        }
    }
    expectComBalanced();
}

// Without COM the locator cannot be made, so a failed start-up shows as 18
// from the query; a refused security setting does not stop the query.
INSTANTIATE_TEST_SUITE_P(
    Steps, FailingStep,
    ::testing::Values(StepFailure{"none", 0, 0}, StepFailure{"CoInitializeEx", 16, 18},
                      StepFailure{"CoInitializeSecurity", 17, 0},
                      StepFailure{"CoCreateInstance", 0, 18}, StepFailure{"ConnectServer", 0, 19},
                      StepFailure{"CoSetProxyBlanket", 0, 20}, StepFailure{"ExecQuery", 0, 21},
                      StepFailure{"Get", 0, 23}),
    NameBy<&StepFailure::step>());

struct Apartment {
    const char *instrumentation;
    uint32_t initializeCode;
};

class ComStartUp : public ::testing::TestWithParam<Apartment> {};

TEST_P(ComStartUp, IsBalancedWhateverTheThreadAlreadyHas) {
    useScenarioText(machine(GetParam().instrumentation));
    {
        WmiClient client;
        EXPECT_EQ(client.initializeCom(), GetParam().initializeCode);
        WmiResults results;
        EXPECT_EQ(queryVoltage("DeviceID = 'ID-A'", results), wmi_code::Success);
        EXPECT_EQ(results["DesignVoltage"], "11400");
    }
    expectComBalanced();
}

INSTANTIATE_TEST_SUITE_P(
    Apartments, ComStartUp,
    ::testing::Values(Apartment{R"({"apartment": "multithreaded"})", 0},
                      Apartment{R"({"apartment": "single-threaded"})", 0},
                      Apartment{R"({"securityAlreadySet": true})", 17},
                      Apartment{R"({"apartment": "single-threaded", "securityAlreadySet": true})",
                                17}),
    NameBy<&Apartment::instrumentation>());

TEST(WmiClient, StartsComOnceAndUndoesItOnce) {
    useScenarioText(machine("{}"));
    {
        WmiClient client;
        EXPECT_EQ(client.initializeCom(), 0u);
        EXPECT_EQ(client.initializeCom(), 0u);
        EXPECT_EQ(emulator::Notebook::instance().counters().comStartups, 1);
    }
    expectComBalanced();
}

// --- decoding, with hand-made rows ---

fake_wbem::Answer value(std::function<void(VARIANT &)> fill) {
    return {S_OK, std::move(fill)};
}
fake_wbem::Answer refusal() {
    return {static_cast<HRESULT>(WBEM_E_NOT_FOUND), nullptr};
}

struct Decoding {
    const char *what;
    std::function<void(VARIANT &)> fill;
    std::string expected;
};

class VariantDecoding : public ::testing::TestWithParam<Decoding> {};

TEST_P(VariantDecoding, GivesTheTextForItsType) {
    fake_wbem::Enumerator rows({{{WIDE_TEXT("P"), value(GetParam().fill)}}});
    const char *names[] = {"P"};
    WmiResults results;
    WmiClient client;
    EXPECT_EQ(client.collectResults(&rows, names, 1, results), wmi_code::Success);
    EXPECT_EQ(results, (WmiResults{{"P", GetParam().expected}})) << GetParam().what;
    EXPECT_EQ(rows.rowsAlive, 0) << "every row is released";
}

using Fill = std::function<void(VARIANT &)>;
// A variant of `type` holding `number`, or for VT_BSTR the string `units`
// (null: a null string) with a NUL put at `cut`.
Fill variant(VARTYPE type, LONG number, const WCHAR *units = nullptr, size_t cut = 0) {
    return [=](VARIANT &v) {
        v.vt = type;
        if (type == VT_I2) v.iVal = static_cast<SHORT>(number);
        if (type == VT_I4) v.lVal = number;
        if (type == VT_BOOL) v.boolVal = static_cast<VARIANT_BOOL>(number);
        if (type == VT_R8) v.dblVal = number + 0.5;
        if (type == VT_BSTR) v.bstrVal = units == nullptr ? nullptr : SysAllocString(units);
        if (cut != 0) v.bstrVal[cut] = 0;
    };
}
Fill i2(SHORT number) {
    return variant(VT_I2, number);
}
Fill i4(LONG number) {
    return variant(VT_I4, number);
}
Fill boolean(LONG flag) {
    return variant(VT_BOOL, flag);
}
Fill bstr(const WCHAR *units, size_t cut = 0) {
    return variant(VT_BSTR, 0, units, cut);
}
Fill ofType(VARTYPE type) {
    return variant(type, 1);
}
const WideText k500(500, WCHAR('x')), k501(501, WCHAR('x'));

INSTANTIATE_TEST_SUITE_P(
    Types, VariantDecoding,
    ::testing::Values(Decoding{"i2", i2(-32768), "-32768"}, Decoding{"i4", i4(-5), "-5"},
                      Decoding{"i4 max", i4(2147483647), "2147483647"},
                      Decoding{"true", boolean(VARIANT_TRUE), "True"},
                      Decoding{"false", boolean(0), "False"}, Decoding{"bool 1", boolean(1), ""},
                      Decoding{"bstr", bstr(WIDE_TEXT("11400")), "11400"},
                      Decoding{"bstr with NUL", bstr(WIDE_TEXT("ab"), 1), "a"},
                      Decoding{"bstr at its limit", bstr(k500.c_str()), std::string(500, 'x')},
                      Decoding{"bstr one past", bstr(k501.c_str()), std::string(500, 'x')},
                      Decoding{"bstr beyond one byte", bstr(WIDE_TEXT("A\u4e2d")), ""},
                      Decoding{"null bstr", bstr(nullptr), ""},
                      Decoding{"null", ofType(VT_NULL), ""}, Decoding{"r8", ofType(VT_R8), ""}),
    NameBy<&Decoding::what>());

TEST(CollectResults, AFailedReadGives23AndTheWalkGoesOn) {
    fake_wbem::Enumerator rows({{{WIDE_TEXT("A"), refusal()}, {WIDE_TEXT("B"), value(i4(1))}},
                                {{WIDE_TEXT("A"), value(i4(2))}, {WIDE_TEXT("B"), value(i4(3))}},
                                {{WIDE_TEXT("B"), value(i2(4))}}});
    const char *names[] = {"A", "B"};
    WmiResults results;
    WmiClient client;
    EXPECT_EQ(client.collectResults(&rows, names, 2, results), wmi_code::PropertyReadFailed);
    EXPECT_EQ(results, (WmiResults{{"A", "2"}, {"B", "4"}}));
    EXPECT_EQ(rows.rowsAlive, 0);
}

TEST(CollectResults, LooksUpNamesCutTo50Characters) {
    const std::string longName(60, 'p');
    fake_wbem::Enumerator rows({{{WideText(50, WCHAR('p')), value(i4(7))}}});
    const char *names[] = {longName.c_str()};
    WmiResults results;
    WmiClient client;
    EXPECT_EQ(client.collectResults(&rows, names, 1, results), wmi_code::Success);
    EXPECT_EQ(results[longName], "7");
}

} // namespace
