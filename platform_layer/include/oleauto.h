#pragma once

// BSTR and VARIANT as automation defines them: a BSTR is a UTF-16 text with
// its byte length in the four bytes before it; a VARIANT is a 24-byte tagged
// union whose VariantClear frees what it owns.

#include <objbase.h>

typedef OLECHAR *BSTR;
typedef uint16_t VARTYPE;
typedef int16_t SHORT;
typedef int16_t VARIANT_BOOL;
typedef float FLOAT;
typedef double DOUBLE;

#define VARIANT_TRUE ((VARIANT_BOOL)-1)
#define VARIANT_FALSE ((VARIANT_BOOL)0)

enum VARENUM {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_BSTR = 8,
    VT_BOOL = 11,
    VT_UI1 = 17,
    VT_UI4 = 19,
    VT_I8 = 20,
    VT_UI8 = 21,
};

struct IRecordInfo;

struct VARIANT {
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        LONGLONG llVal;
        LONG lVal;
        BYTE bVal;
        SHORT iVal;
        FLOAT fltVal;
        DOUBLE dblVal;
        VARIANT_BOOL boolVal;
        BSTR bstrVal;
        IUnknown *punkVal;
        ULONG ulVal;
        ULONGLONG ullVal;
        struct {
            PVOID pvRecord;
            IRecordInfo *pRecInfo;
        } record;
    };
};
typedef VARIANT VARIANTARG;

struct SAFEARRAY;

extern "C" {
WIN32_API BSTR SysAllocString(const OLECHAR *text);
WIN32_API void SysFreeString(BSTR text);
WIN32_API UINT SysStringLen(BSTR text);
WIN32_API void VariantInit(VARIANTARG *variant);
WIN32_API HRESULT VariantClear(VARIANTARG *variant);
}

static_assert(sizeof(VARIANT) == 24, "VARIANT is 24 bytes on 64-bit Windows");
static_assert(sizeof(VARIANT_BOOL) == 2, "VARIANT_BOOL is 16 bits");
