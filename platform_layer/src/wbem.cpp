// The instrumentation client's COM objects: locator, services, enumerator
// and class object, over the machine's instrumentation service.

#include <wbemidl.h>

#include <string>
#include <vector>

#include "com_objects.h"
#include "ignoring_case.h"
#include "instrumentation_query.h"
#include "platform_layer/machine.h"
#include "wide_text.h"

extern "C" {
const CLSID CLSID_WbemLocator = {
    0x4590F811, 0x1D3A, 0x11D0, {0x89, 0x1F, 0x00, 0xAA, 0x00, 0x4B, 0x2E, 0x24}};
const IID IID_IWbemLocator = {
    0xDC12A687, 0x737F, 0x11CF, {0x88, 0x4D, 0x00, 0xAA, 0x00, 0x4B, 0x2E, 0x24}};
const IID IID_IWbemServices = {
    0x9556DC99, 0x828C, 0x11CF, {0xA3, 0x7E, 0x00, 0xAA, 0x00, 0x32, 0x40, 0xC7}};
const IID IID_IEnumWbemClassObject = {
    0x027947E1, 0xD731, 0x11CE, {0xA3, 0x57, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01}};
const IID IID_IWbemClassObject = {
    0xDC12A681, 0x737F, 0x11CF, {0x88, 0x4D, 0x00, 0xAA, 0x00, 0x4B, 0x2E, 0x24}};
}

namespace {

using platform_layer::currentMachine;
using platform_layer::InstrumentationAnswer;
using platform_layer::InstrumentationInstance;
using platform_layer::InstrumentationValue;
using platform_layer::LayerEvent;

using win32::narrow;
using win32::widen;

// Reference counting, interface lookup and the object count for tests.
template <typename Interface> class ComObject : public Interface {
public:
    explicit ComObject(const IID &iid) : iid_(iid) {
        currentMachine().note(LayerEvent::ComObjectMade);
    }
    virtual ~ComObject() { currentMachine().note(LayerEvent::ComObjectReleased); }
    ComObject(const ComObject &) = delete;
    ComObject &operator=(const ComObject &) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void **object) override {
        if (object == nullptr) return E_POINTER;
        if (iid == IID_IUnknown || iid == iid_) {
            *object = static_cast<Interface *>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

private:
    IID iid_;
    ULONG references_ = 1;
};

constexpr HRESULT kNotSupported = WBEM_E_NOT_SUPPORTED;

class ClassObject : public ComObject<IWbemClassObject> {
public:
    explicit ClassObject(InstrumentationInstance row)
        : ComObject(IID_IWbemClassObject), row_(std::move(row)) {}

    HRESULT STDMETHODCALLTYPE Get(LPCWSTR name, LONG flags, VARIANT *value, CIMTYPE *type,
                                  LONG *flavor) override {
        if (name == nullptr || flags != 0) return WBEM_E_INVALID_PARAMETER;
        if (currentMachine().faults().comStepFails("Get")) return WBEM_E_FAILED;
        const std::string wanted = narrow(name);
        const InstrumentationValue *found = nullptr;
        for (const auto &property : row_) {
            if (platform_layer::sameIgnoringCase(property.first, wanted)) found = &property.second;
        }
        if (found == nullptr) return WBEM_E_NOT_FOUND;
        if (value != nullptr) {
            VariantInit(value);
            if (found->kind == InstrumentationValue::Text) {
                value->vt = VT_BSTR;
                value->bstrVal = SysAllocString(widen(found->text).c_str());
            } else if (found->kind == InstrumentationValue::Int32) {
                value->vt = VT_I4;
                value->lVal = found->number;
            } else if (found->kind == InstrumentationValue::Raw) {
                value->vt = found->variantType;
                if (found->variantType == VT_BSTR) {
                    value->bstrVal = SysAllocString(widen(found->text).c_str());
                } else {
                    value->ullVal = found->bits;
                }
            } else {
                value->vt = VT_NULL;
            }
        }
        if (type != nullptr) *type = found->kind == InstrumentationValue::Int32 ? 3 : 8;
        if (flavor != nullptr) *flavor = 0;
        return WBEM_S_NO_ERROR;
    }

    HRESULT STDMETHODCALLTYPE GetQualifierSet(IWbemQualifierSet **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE Put(LPCWSTR, LONG, VARIANT *, CIMTYPE) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE Delete(LPCWSTR) override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE GetNames(LPCWSTR, LONG, VARIANT *, SAFEARRAY **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE BeginEnumeration(LONG) override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE Next(LONG, BSTR *, VARIANT *, CIMTYPE *, LONG *) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE EndEnumeration() override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE GetPropertyQualifierSet(LPCWSTR, IWbemQualifierSet **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE Clone(IWbemClassObject **) override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE GetObjectText(LONG, BSTR *) override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE SpawnDerivedClass(LONG, IWbemClassObject **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE SpawnInstance(LONG, IWbemClassObject **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE CompareTo(LONG, IWbemClassObject *) override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE GetPropertyOrigin(LPCWSTR, BSTR *) override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE InheritsFrom(LPCWSTR) override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE GetMethod(LPCWSTR, LONG, IWbemClassObject **,
                                        IWbemClassObject **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE PutMethod(LPCWSTR, LONG, IWbemClassObject *,
                                        IWbemClassObject *) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE DeleteMethod(LPCWSTR) override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE BeginMethodEnumeration(LONG) override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE NextMethod(LONG, BSTR *, IWbemClassObject **,
                                         IWbemClassObject **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE EndMethodEnumeration() override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE GetMethodQualifierSet(LPCWSTR, IWbemQualifierSet **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE GetMethodOrigin(LPCWSTR, BSTR *) override { return kNotSupported; }

private:
    InstrumentationInstance row_;
};

// A forward-only enumerator over the rows of one answer.
class Enumerator : public ComObject<IEnumWbemClassObject> {
public:
    explicit Enumerator(std::vector<InstrumentationInstance> rows)
        : ComObject(IID_IEnumWbemClassObject), rows_(std::move(rows)) {}

    HRESULT STDMETHODCALLTYPE Next(LONG, ULONG count, IWbemClassObject **objects,
                                   ULONG *returned) override {
        if (objects == nullptr || returned == nullptr) return WBEM_E_INVALID_PARAMETER;
        *returned = 0;
        while (*returned < count && next_ < rows_.size()) {
            objects[*returned] = new ClassObject(rows_[next_++]);
            ++*returned;
        }
        return *returned == count ? WBEM_S_NO_ERROR : WBEM_S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE NextAsync(ULONG, IWbemObjectSink *) override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE Clone(IEnumWbemClassObject **) override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE Skip(LONG, ULONG) override { return kNotSupported; }

private:
    std::vector<InstrumentationInstance> rows_;
    size_t next_ = 0;
};

class Services : public ComObject<IWbemServices> {
public:
    Services() : ComObject(IID_IWbemServices) {}

    HRESULT STDMETHODCALLTYPE ExecQuery(const BSTR language, const BSTR query, LONG, IWbemContext *,
                                        IEnumWbemClassObject **enumerator) override {
        if (enumerator == nullptr) return WBEM_E_INVALID_PARAMETER;
        *enumerator = nullptr;
        if (language == nullptr || query == nullptr) return WBEM_E_INVALID_PARAMETER;
        platform_layer::Machine &machine = currentMachine();
        machine.note(LayerEvent::InstrumentationQueried);
        if (machine.faults().comStepFails("ExecQuery")) return WBEM_E_FAILED;
        const InstrumentationAnswer answer =
            platform_layer::queryInstrumentation(machine, narrow(language), narrow(query));
        if (answer.status != 0) return answer.status;
        *enumerator = new Enumerator(answer.rows);
        return WBEM_S_NO_ERROR;
    }

    HRESULT STDMETHODCALLTYPE OpenNamespace(const BSTR, LONG, IWbemContext *, IWbemServices **,
                                            IWbemCallResult **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE CancelAsyncCall(IWbemObjectSink *) override { return kNotSupported; }
    HRESULT STDMETHODCALLTYPE QueryObjectSink(LONG, IWbemObjectSink **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE GetObject(const BSTR, LONG, IWbemContext *, IWbemClassObject **,
                                        IWbemCallResult **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE GetObjectAsync(const BSTR, LONG, IWbemContext *,
                                             IWbemObjectSink *) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE PutClass(IWbemClassObject *, LONG, IWbemContext *,
                                       IWbemCallResult **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE PutClassAsync(IWbemClassObject *, LONG, IWbemContext *,
                                            IWbemObjectSink *) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE DeleteClass(const BSTR, LONG, IWbemContext *,
                                          IWbemCallResult **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE DeleteClassAsync(const BSTR, LONG, IWbemContext *,
                                               IWbemObjectSink *) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE CreateClassEnum(const BSTR, LONG, IWbemContext *,
                                              IEnumWbemClassObject **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE CreateClassEnumAsync(const BSTR, LONG, IWbemContext *,
                                                   IWbemObjectSink *) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE PutInstance(IWbemClassObject *, LONG, IWbemContext *,
                                          IWbemCallResult **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE PutInstanceAsync(IWbemClassObject *, LONG, IWbemContext *,
                                               IWbemObjectSink *) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE DeleteInstance(const BSTR, LONG, IWbemContext *,
                                             IWbemCallResult **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE DeleteInstanceAsync(const BSTR, LONG, IWbemContext *,
                                                  IWbemObjectSink *) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE CreateInstanceEnum(const BSTR, LONG, IWbemContext *,
                                                 IEnumWbemClassObject **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE CreateInstanceEnumAsync(const BSTR, LONG, IWbemContext *,
                                                      IWbemObjectSink *) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE ExecQueryAsync(const BSTR, const BSTR, LONG, IWbemContext *,
                                             IWbemObjectSink *) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE ExecNotificationQuery(const BSTR, const BSTR, LONG, IWbemContext *,
                                                    IEnumWbemClassObject **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE ExecNotificationQueryAsync(const BSTR, const BSTR, LONG,
                                                         IWbemContext *,
                                                         IWbemObjectSink *) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE ExecMethod(const BSTR, const BSTR, LONG, IWbemContext *,
                                         IWbemClassObject *, IWbemClassObject **,
                                         IWbemCallResult **) override {
        return kNotSupported;
    }
    HRESULT STDMETHODCALLTYPE ExecMethodAsync(const BSTR, const BSTR, LONG, IWbemContext *,
                                              IWbemClassObject *, IWbemObjectSink *) override {
        return kNotSupported;
    }
};

class Locator : public ComObject<IWbemLocator> {
public:
    Locator() : ComObject(IID_IWbemLocator) {}

    HRESULT STDMETHODCALLTYPE ConnectServer(const BSTR resource, const BSTR, const BSTR, const BSTR,
                                            LONG, const BSTR, IWbemContext *,
                                            IWbemServices **services) override {
        if (services == nullptr) return WBEM_E_INVALID_PARAMETER;
        *services = nullptr;
        if (currentMachine().faults().comStepFails("ConnectServer")) return E_ACCESSDENIED;
        if (resource == nullptr || !currentMachine().knowsNamespace(narrow(resource))) {
            return WBEM_E_INVALID_NAMESPACE;
        }
        *services = new Services();
        return WBEM_S_NO_ERROR;
    }
};

} // namespace

namespace win32_com {

HRESULT createLocator(REFIID iid, LPVOID *object) {
    if (iid != IID_IWbemLocator && iid != IID_IUnknown) return E_NOINTERFACE;
    *object = static_cast<IWbemLocator *>(new Locator());
    return S_OK;
}

} // namespace win32_com
