#include "generic_battery/wmi_client.h"

#include <cstdio>
#include <cstring>
#include <new>
#include <vector>

#include "platform/string_handler.h"
#include "wide_text.h"

namespace {

// A BSTR that frees itself; SysAllocString gives null when memory runs out,
// and the platform call then refuses the null argument.
class OwnedBstr {
public:
    explicit OwnedBstr(const WCHAR *text) : text_(SysAllocString(text)) {}
    ~OwnedBstr() { SysFreeString(text_); }
    OwnedBstr(const OwnedBstr &) = delete;
    OwnedBstr &operator=(const OwnedBstr &) = delete;
    BSTR get() const { return text_; }

private:
    BSTR text_;
};

template <typename Interface> void releaseIfSet(Interface *&object) {
    if (object != nullptr) {
        object->Release();
        object = nullptr;
    }
}

// Appends at most `limit` bytes of `piece` behind the text already in `out`.
void appendBounded(char *out, size_t &used, const char *piece, size_t limit) {
    const size_t length = StringHandler::instance()->lengthN(piece, limit);
    std::memcpy(out + used, piece, length);
    used += length;
    out[used] = '\0';
}

std::string formatSigned(int32_t value) {
    char buffer[254];
    const int written = std::snprintf(buffer, sizeof buffer, "%i", static_cast<int>(value));
    return written < 0 ? std::string() : std::string(buffer);
}

// The value text of one property, by the variant's type.
std::string decodeVariant(const VARIANT &value) {
    switch (value.vt) {
    case VT_I2:
        return formatSigned(value.iVal);
    case VT_I4:
        return formatSigned(value.lVal);
    case VT_BOOL: {
        const auto flag = static_cast<uint16_t>(value.boolVal);
        if (flag == 0xFFFF) return "True";
        if (flag == 0) return "False";
        return std::string();
    }
    case VT_BSTR: {
        if (value.bstrVal == nullptr) return std::string();
        constexpr size_t kTextLimit = 500;
        char buffer[kTextLimit + 1];
        size_t converted = 0;
        StringHandler::instance()->wideToMultibyte(&converted, buffer, sizeof buffer, value.bstrVal,
                                                   kTextLimit);
        return std::string(buffer);
    }
    default:
        return std::string();
    }
}

} // namespace

WmiClient::~WmiClient() {
    for (; comStartups > 0; --comStartups) {
        CoUninitialize();
    }
}

uint32_t WmiClient::initializeCom() {
    if (comInitialized) return wmi_code::Success;

    const HRESULT started = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    if (FAILED(started) && started != RPC_E_CHANGED_MODE) {
        return wmi_code::ComStartFailed;
    }
    // S_FALSE means COM was already up on this thread, but it still counts
    // as a start that must be balanced.
    if (SUCCEEDED(started)) ++comStartups;

    const HRESULT secured =
        CoInitializeSecurity(nullptr, -1, nullptr, nullptr, RPC_C_AUTHN_LEVEL_DEFAULT,
                             RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE, nullptr);
    if (FAILED(secured)) {
        return wmi_code::ComSecurityFailed;
    }
    comInitialized = true;
    return wmi_code::Success;
}

uint32_t WmiClient::queryProperties(const char *const *propertyNames, const char *condition,
                                    const char *className, int32_t count, WmiResults &results,
                                    const WCHAR *wmiNamespace) {
    // Security may already have been set by the process; the query can still
    // work, so the start-up result does not stop it.
    initializeCom();

    IWbemLocator *locator = nullptr;
    IWbemServices *services = nullptr;
    IEnumWbemClassObject *enumerator = nullptr;
    char *statement = nullptr;

    uint32_t code = wmi_code::Success;
    const HRESULT created =
        CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator,
                         reinterpret_cast<LPVOID *>(&locator));
    if (FAILED(created) || locator == nullptr) {
        code = wmi_code::LocatorFailed;
    }
    if (code == wmi_code::Success) {
        code = connectNamespace(wmiNamespace, locator, services);
    }
    if (code == wmi_code::Success) {
        const HRESULT blanket = CoSetProxyBlanket(services, RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE,
                                                  nullptr, RPC_C_AUTHN_LEVEL_CALL,
                                                  RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE);
        if (FAILED(blanket)) code = wmi_code::ProxyBlanketFailed;
    }
    if (code == wmi_code::Success) {
        code = buildSelect(propertyNames, condition, className, count, statement);
    }
    if (code == wmi_code::Success) {
        code = executeQuery(services, enumerator, statement);
    }
    if (code == wmi_code::Success) {
        code = collectResults(enumerator, propertyNames, count, results);
    }

    releaseIfSet(enumerator);
    releaseIfSet(services);
    releaseIfSet(locator);
    delete[] statement;
    return code;
}

uint32_t WmiClient::buildSelect(const char *const *propertyNames, const char *condition,
                                const char *className, int32_t count, char *&statement) {
    statement = nullptr;
    if (propertyNames == nullptr) return wmi_code::NullPropertyName;
    if (count < 1) return wmi_code::NoProperties;

    // "SELECT " + " FROM " + NUL, and " WHERE " with a condition.
    size_t size = condition != nullptr ? 21 : 14;
    for (int32_t i = 0; i < count; ++i) {
        if (propertyNames[i] == nullptr) return wmi_code::NullPropertyName;
        size += StringHandler::instance()->lengthN(propertyNames[i], kNameLimit);
        if (i + 1 < count) size += 2;
    }
    if (className == nullptr) return wmi_code::NullClassName;
    size += StringHandler::instance()->lengthN(className, kClassLimit);
    if (condition != nullptr)
        size += StringHandler::instance()->lengthN(condition, kConditionLimit);

    // Without memory there is no statement, which the query step reports.
    char *text = new (std::nothrow) char[size];
    if (text == nullptr) return wmi_code::Success;
    text[0] = '\0';
    size_t used = 0;
    appendBounded(text, used, "SELECT ", 7);
    for (int32_t i = 0; i < count; ++i) {
        appendBounded(text, used, propertyNames[i], kNameLimit);
        if (i + 1 < count) appendBounded(text, used, ", ", 2);
    }
    appendBounded(text, used, " FROM ", 6);
    appendBounded(text, used, className, kClassLimit);
    if (condition != nullptr) {
        appendBounded(text, used, " WHERE ", 7);
        appendBounded(text, used, condition, kConditionLimit);
    }
    statement = text;
    return wmi_code::Success;
}

uint32_t WmiClient::connectNamespace(const WCHAR *wmiNamespace, IWbemLocator *locator,
                                     IWbemServices *&services) {
    services = nullptr;
    if (locator == nullptr) return wmi_code::ConnectFailed;
    OwnedBstr resource(wmiNamespace);
    const HRESULT connected = locator->ConnectServer(resource.get(), nullptr, nullptr, nullptr, 0,
                                                     nullptr, nullptr, &services);
    if (FAILED(connected) || services == nullptr) {
        releaseIfSet(services);
        return wmi_code::ConnectFailed;
    }
    return wmi_code::Success;
}

uint32_t WmiClient::executeQuery(IWbemServices *services, IEnumWbemClassObject *&enumerator,
                                 const char *statement) {
    enumerator = nullptr;
    if (statement == nullptr) return wmi_code::NullStatement;
    if (services == nullptr) return wmi_code::QueryFailed;

    OwnedBstr language(WIDE_TEXT("WQL"));
    const size_t length = std::strlen(statement);
    std::vector<WCHAR> wide(length + 1, 0);
    size_t converted = 0;
    StringHandler::instance()->multibyteToWide(&converted, wide.data(), wide.size(), statement,
                                               length);
    OwnedBstr query(wide.data());
    const HRESULT executed = services->ExecQuery(
        language.get(), query.get(), WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY, nullptr,
        &enumerator);
    if (FAILED(executed) || enumerator == nullptr) {
        releaseIfSet(enumerator);
        return wmi_code::QueryFailed;
    }
    return wmi_code::Success;
}

uint32_t WmiClient::collectResults(IEnumWbemClassObject *enumerator,
                                   const char *const *propertyNames, int32_t count,
                                   WmiResults &results) {
    if (propertyNames == nullptr) return wmi_code::NullPropertyName;
    if (count < 1) return wmi_code::NoProperties;
    for (int32_t i = 0; i < count; ++i) {
        if (propertyNames[i] == nullptr) return wmi_code::NullPropertyName;
    }
    if (enumerator == nullptr) return wmi_code::QueryFailed;

    uint32_t code = wmi_code::Success;
    for (;;) {
        IWbemClassObject *row = nullptr;
        ULONG returned = 0;
        // Only the count tells whether a row came; the call's own result
        // also reports time-outs, which an infinite wait does not have.
        enumerator->Next(WBEM_INFINITE, 1, &row, &returned);
        if (returned == 0 || row == nullptr) break;

        for (int32_t i = 0; i < count; ++i) {
            WCHAR wideName[kNameLimit + 1];
            size_t converted = 0;
            StringHandler::instance()->multibyteToWide(&converted, wideName, kNameLimit + 1,
                                                       propertyNames[i], kNameLimit);
            VARIANT value;
            VariantInit(&value);
            CIMTYPE type = 0;
            if (FAILED(row->Get(wideName, 0, &value, &type, nullptr))) {
                code = wmi_code::PropertyReadFailed;
                continue;
            }
            results[propertyNames[i]] = decodeVariant(value);
            VariantClear(&value);
        }
        row->Release();
    }
    return code;
}
