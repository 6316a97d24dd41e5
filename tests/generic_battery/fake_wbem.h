#pragma once

#include <wbemidl.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "wide_text.h"

// Text in the platform's WCHAR, 16-bit on both systems.
using WideText = std::basic_string<WCHAR>;

// Hand-made rows and enumerators for driving WmiClient::collectResults
// with values the emulated service never gives.
namespace fake_wbem {

// What Get gives for one property of one row.
struct Answer {
    HRESULT result = S_OK;
    std::function<void(VARIANT &)> fill; // sets the variant on success
};

class Row : public IWbemClassObject {
public:
    explicit Row(std::map<WideText, Answer> answers, int *alive)
        : answers_(std::move(answers)), alive_(alive) {
        ++*alive_;
    }
    virtual ~Row() { --*alive_; }

    HRESULT QueryInterface(REFIID, void **) override { return E_NOINTERFACE; }
    ULONG AddRef() override { return ++references_; }
    ULONG Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    HRESULT Get(LPCWSTR name, LONG, VARIANT *value, CIMTYPE *, LONG *) override {
        const auto found = answers_.find(WideText(name));
        if (found == answers_.end()) return WBEM_E_NOT_FOUND;
        if (FAILED(found->second.result)) return found->second.result;
        VariantInit(value);
        if (found->second.fill) found->second.fill(*value);
        return found->second.result;
    }
    HRESULT GetQualifierSet(IWbemQualifierSet **) override { return E_NOTIMPL; }
    HRESULT Put(LPCWSTR, LONG, VARIANT *, CIMTYPE) override { return E_NOTIMPL; }
    HRESULT Delete(LPCWSTR) override { return E_NOTIMPL; }
    HRESULT GetNames(LPCWSTR, LONG, VARIANT *, SAFEARRAY **) override { return E_NOTIMPL; }
    HRESULT BeginEnumeration(LONG) override { return E_NOTIMPL; }
    HRESULT Next(LONG, BSTR *, VARIANT *, CIMTYPE *, LONG *) override { return E_NOTIMPL; }
    HRESULT EndEnumeration() override { return E_NOTIMPL; }
    HRESULT GetPropertyQualifierSet(LPCWSTR, IWbemQualifierSet **) override { return E_NOTIMPL; }
    HRESULT Clone(IWbemClassObject **) override { return E_NOTIMPL; }
    HRESULT GetObjectText(LONG, BSTR *) override { return E_NOTIMPL; }
    HRESULT SpawnDerivedClass(LONG, IWbemClassObject **) override { return E_NOTIMPL; }
    HRESULT SpawnInstance(LONG, IWbemClassObject **) override { return E_NOTIMPL; }
    HRESULT CompareTo(LONG, IWbemClassObject *) override { return E_NOTIMPL; }
    HRESULT GetPropertyOrigin(LPCWSTR, BSTR *) override { return E_NOTIMPL; }
    HRESULT InheritsFrom(LPCWSTR) override { return E_NOTIMPL; }
    HRESULT GetMethod(LPCWSTR, LONG, IWbemClassObject **, IWbemClassObject **) override {
        return E_NOTIMPL;
    }
    HRESULT PutMethod(LPCWSTR, LONG, IWbemClassObject *, IWbemClassObject *) override {
        return E_NOTIMPL;
    }
    HRESULT DeleteMethod(LPCWSTR) override { return E_NOTIMPL; }
    HRESULT BeginMethodEnumeration(LONG) override { return E_NOTIMPL; }
    HRESULT NextMethod(LONG, BSTR *, IWbemClassObject **, IWbemClassObject **) override {
        return E_NOTIMPL;
    }
    HRESULT EndMethodEnumeration() override { return E_NOTIMPL; }
    HRESULT GetMethodQualifierSet(LPCWSTR, IWbemQualifierSet **) override { return E_NOTIMPL; }
    HRESULT GetMethodOrigin(LPCWSTR, BSTR *) override { return E_NOTIMPL; }

private:
    std::map<WideText, Answer> answers_;
    int *alive_;
    ULONG references_ = 1;
};

// Gives its rows one by one. The call result is deliberately odd (a
// time-out with a row, success without one), since only the count counts.
class Enumerator : public IEnumWbemClassObject {
public:
    explicit Enumerator(std::vector<std::map<WideText, Answer>> rows) : rows_(std::move(rows)) {}
    virtual ~Enumerator() = default;

    int rowsAlive = 0;

    HRESULT QueryInterface(REFIID, void **) override { return E_NOINTERFACE; }
    ULONG AddRef() override { return 2; }
    ULONG Release() override { return 1; }
    HRESULT Next(LONG, ULONG, IWbemClassObject **objects, ULONG *returned) override {
        if (next_ >= rows_.size()) {
            *returned = 0;
            return S_OK;
        }
        objects[0] = new Row(rows_[next_++], &rowsAlive);
        *returned = 1;
        return WBEM_S_TIMEDOUT;
    }
    HRESULT Reset() override { return E_NOTIMPL; }
    HRESULT NextAsync(ULONG, IWbemObjectSink *) override { return E_NOTIMPL; }
    HRESULT Clone(IEnumWbemClassObject **) override { return E_NOTIMPL; }
    HRESULT Skip(LONG, ULONG) override { return E_NOTIMPL; }

private:
    std::vector<std::map<WideText, Answer>> rows_;
    size_t next_ = 0;
};

} // namespace fake_wbem
