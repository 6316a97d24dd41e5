#pragma once

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>
#include <wbemidl.h>

#include <cstdint>
#include <map>
#include <string>

// Property name to value text of the rows of one query; with several rows
// the last row's value stands.
using WmiResults = std::map<std::string, std::string>;

// Codes of the instrumentation client: each tells how far a query came.
namespace wmi_code {
inline constexpr uint32_t Success = 0;
inline constexpr uint32_t ComStartFailed = 16;
inline constexpr uint32_t ComSecurityFailed = 17;
inline constexpr uint32_t LocatorFailed = 18;
inline constexpr uint32_t ConnectFailed = 19;
inline constexpr uint32_t ProxyBlanketFailed = 20;
inline constexpr uint32_t QueryFailed = 21;
inline constexpr uint32_t PropertyReadFailed = 23;
inline constexpr uint32_t NullPropertyName = 25;
inline constexpr uint32_t NullClassName = 26;
inline constexpr uint32_t NoProperties = 27;
inline constexpr uint32_t NullStatement = 28;
} // namespace wmi_code

// A client of the management instrumentation for one query: it brings COM
// up on the calling thread, builds a WQL SELECT, runs it and decodes the
// requested properties of every row. Made on the caller's stack and used once.
class WmiClient {
public:
    static constexpr size_t kNameLimit = 50;
    static constexpr size_t kClassLimit = 50;
    static constexpr size_t kConditionLimit = 500;

    WmiClient() = default;
    ~WmiClient();
    WmiClient(const WmiClient &) = delete;
    WmiClient &operator=(const WmiClient &) = delete;

    // The whole query; the only operation callers need. `condition` may be
    // null for no WHERE clause.
    uint32_t queryProperties(const char *const *propertyNames, const char *condition,
                             const char *className, int32_t count, WmiResults &results,
                             const WCHAR *wmiNamespace);

    uint32_t initializeCom();
    // Hands out a statement allocated with new[]; the caller deletes it.
    uint32_t buildSelect(const char *const *propertyNames, const char *condition,
                         const char *className, int32_t count, char *&statement);
    uint32_t connectNamespace(const WCHAR *wmiNamespace, IWbemLocator *locator,
                              IWbemServices *&services);
    uint32_t executeQuery(IWbemServices *services, IEnumWbemClassObject *&enumerator,
                          const char *statement);
    uint32_t collectResults(IEnumWbemClassObject *enumerator, const char *const *propertyNames,
                            int32_t count, WmiResults &results);

private:
    bool comInitialized = false;
    // Successful CoInitializeEx calls (S_OK or S_FALSE) still owed a
    // CoUninitialize; RPC_E_CHANGED_MODE added nothing to balance.
    uint32_t comStartups = 0;
};
