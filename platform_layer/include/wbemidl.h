#pragma once

// The management instrumentation client interfaces, in the SDK's vtable
// order. Only the methods the module calls do anything in the emulated
// service; the others answer WBEM_E_NOT_SUPPORTED.

#include <objbase.h>
#include <oleauto.h>

typedef LONG CIMTYPE;

struct IWbemContext;
struct IWbemCallResult;
struct IWbemObjectSink;
struct IWbemQualifierSet;
struct IWbemServices;
struct IWbemClassObject;
struct IEnumWbemClassObject;

#define WBEM_FLAG_RETURN_IMMEDIATELY 0x10
#define WBEM_FLAG_FORWARD_ONLY 0x20
#define WBEM_INFINITE (-1)

extern "C" WIN32_API const CLSID CLSID_WbemLocator;
extern "C" WIN32_API const IID IID_IWbemLocator;
extern "C" WIN32_API const IID IID_IWbemServices;
extern "C" WIN32_API const IID IID_IEnumWbemClassObject;
extern "C" WIN32_API const IID IID_IWbemClassObject;

struct IWbemLocator : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE ConnectServer(const BSTR networkResource, const BSTR user,
                                                    const BSTR password, const BSTR locale,
                                                    LONG securityFlags, const BSTR authority,
                                                    IWbemContext *context,
                                                    IWbemServices **services) = 0;

protected:
    ~IWbemLocator() = default;
};

struct IWbemServices : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE OpenNamespace(const BSTR, LONG, IWbemContext *,
                                                    IWbemServices **, IWbemCallResult **) = 0;
    virtual HRESULT STDMETHODCALLTYPE CancelAsyncCall(IWbemObjectSink *) = 0;
    virtual HRESULT STDMETHODCALLTYPE QueryObjectSink(LONG, IWbemObjectSink **) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetObject(const BSTR, LONG, IWbemContext *,
                                                IWbemClassObject **, IWbemCallResult **) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetObjectAsync(const BSTR, LONG, IWbemContext *,
                                                     IWbemObjectSink *) = 0;
    virtual HRESULT STDMETHODCALLTYPE PutClass(IWbemClassObject *, LONG, IWbemContext *,
                                               IWbemCallResult **) = 0;
    virtual HRESULT STDMETHODCALLTYPE PutClassAsync(IWbemClassObject *, LONG, IWbemContext *,
                                                    IWbemObjectSink *) = 0;
    virtual HRESULT STDMETHODCALLTYPE DeleteClass(const BSTR, LONG, IWbemContext *,
                                                  IWbemCallResult **) = 0;
    virtual HRESULT STDMETHODCALLTYPE DeleteClassAsync(const BSTR, LONG, IWbemContext *,
                                                       IWbemObjectSink *) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateClassEnum(const BSTR, LONG, IWbemContext *,
                                                      IEnumWbemClassObject **) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateClassEnumAsync(const BSTR, LONG, IWbemContext *,
                                                           IWbemObjectSink *) = 0;
    virtual HRESULT STDMETHODCALLTYPE PutInstance(IWbemClassObject *, LONG, IWbemContext *,
                                                  IWbemCallResult **) = 0;
    virtual HRESULT STDMETHODCALLTYPE PutInstanceAsync(IWbemClassObject *, LONG, IWbemContext *,
                                                       IWbemObjectSink *) = 0;
    virtual HRESULT STDMETHODCALLTYPE DeleteInstance(const BSTR, LONG, IWbemContext *,
                                                     IWbemCallResult **) = 0;
    virtual HRESULT STDMETHODCALLTYPE DeleteInstanceAsync(const BSTR, LONG, IWbemContext *,
                                                          IWbemObjectSink *) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateInstanceEnum(const BSTR, LONG, IWbemContext *,
                                                         IEnumWbemClassObject **) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateInstanceEnumAsync(const BSTR, LONG, IWbemContext *,
                                                              IWbemObjectSink *) = 0;
    virtual HRESULT STDMETHODCALLTYPE ExecQuery(const BSTR queryLanguage, const BSTR query,
                                                LONG flags, IWbemContext *context,
                                                IEnumWbemClassObject **enumerator) = 0;
    virtual HRESULT STDMETHODCALLTYPE ExecQueryAsync(const BSTR, const BSTR, LONG, IWbemContext *,
                                                     IWbemObjectSink *) = 0;
    virtual HRESULT STDMETHODCALLTYPE ExecNotificationQuery(const BSTR, const BSTR, LONG,
                                                            IWbemContext *,
                                                            IEnumWbemClassObject **) = 0;
    virtual HRESULT STDMETHODCALLTYPE ExecNotificationQueryAsync(const BSTR, const BSTR, LONG,
                                                                 IWbemContext *,
                                                                 IWbemObjectSink *) = 0;
    virtual HRESULT STDMETHODCALLTYPE ExecMethod(const BSTR, const BSTR, LONG, IWbemContext *,
                                                 IWbemClassObject *, IWbemClassObject **,
                                                 IWbemCallResult **) = 0;
    virtual HRESULT STDMETHODCALLTYPE ExecMethodAsync(const BSTR, const BSTR, LONG, IWbemContext *,
                                                      IWbemClassObject *, IWbemObjectSink *) = 0;

protected:
    ~IWbemServices() = default;
};

struct IEnumWbemClassObject : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Next(LONG timeout, ULONG count, IWbemClassObject **objects,
                                           ULONG *returned) = 0;
    virtual HRESULT STDMETHODCALLTYPE NextAsync(ULONG, IWbemObjectSink *) = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumWbemClassObject **) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(LONG, ULONG) = 0;

protected:
    ~IEnumWbemClassObject() = default;
};

struct IWbemClassObject : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetQualifierSet(IWbemQualifierSet **) = 0;
    virtual HRESULT STDMETHODCALLTYPE Get(LPCWSTR name, LONG flags, VARIANT *value, CIMTYPE *type,
                                          LONG *flavor) = 0;
    virtual HRESULT STDMETHODCALLTYPE Put(LPCWSTR, LONG, VARIANT *, CIMTYPE) = 0;
    virtual HRESULT STDMETHODCALLTYPE Delete(LPCWSTR) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetNames(LPCWSTR, LONG, VARIANT *, SAFEARRAY **) = 0;
    virtual HRESULT STDMETHODCALLTYPE BeginEnumeration(LONG) = 0;
    virtual HRESULT STDMETHODCALLTYPE Next(LONG, BSTR *, VARIANT *, CIMTYPE *, LONG *) = 0;
    virtual HRESULT STDMETHODCALLTYPE EndEnumeration() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPropertyQualifierSet(LPCWSTR, IWbemQualifierSet **) = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IWbemClassObject **) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetObjectText(LONG, BSTR *) = 0;
    virtual HRESULT STDMETHODCALLTYPE SpawnDerivedClass(LONG, IWbemClassObject **) = 0;
    virtual HRESULT STDMETHODCALLTYPE SpawnInstance(LONG, IWbemClassObject **) = 0;
    virtual HRESULT STDMETHODCALLTYPE CompareTo(LONG, IWbemClassObject *) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPropertyOrigin(LPCWSTR, BSTR *) = 0;
    virtual HRESULT STDMETHODCALLTYPE InheritsFrom(LPCWSTR) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetMethod(LPCWSTR, LONG, IWbemClassObject **,
                                                IWbemClassObject **) = 0;
    virtual HRESULT STDMETHODCALLTYPE PutMethod(LPCWSTR, LONG, IWbemClassObject *,
                                                IWbemClassObject *) = 0;
    virtual HRESULT STDMETHODCALLTYPE DeleteMethod(LPCWSTR) = 0;
    virtual HRESULT STDMETHODCALLTYPE BeginMethodEnumeration(LONG) = 0;
    virtual HRESULT STDMETHODCALLTYPE NextMethod(LONG, BSTR *, IWbemClassObject **,
                                                 IWbemClassObject **) = 0;
    virtual HRESULT STDMETHODCALLTYPE EndMethodEnumeration() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetMethodQualifierSet(LPCWSTR, IWbemQualifierSet **) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetMethodOrigin(LPCWSTR, BSTR *) = 0;

protected:
    ~IWbemClassObject() = default;
};
