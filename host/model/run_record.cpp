#include "model/run_record.h"

#include "battery_rules/host_keys.h"

const char *resultName(TestResultCode result) {
    switch (result) {
    case ResultSuccess:
        return "ResultSuccess";
    case ResultFailed:
        return "ResultFailed";
    case ResultNotApplicable:
        return "ResultNotApplicable";
    case ResultAborted:
        return "ResultAborted";
    case ResultWarning:
        return "ResultWarning";
    case ResultInvalid:
        return "ResultInvalid";
    default:
        return "unknown";
    }
}

bool isChargeLine(const std::string &text) {
    for (const char *key :
         {keys::TOTAL_BATTERY_CHARGE, keys::INITIAL_BATTERY_CHARGE, keys::FINAL_BATTERY_CHARGE}) {
        if (text.rfind(key, 0) == 0) return true;
    }
    return false;
}
